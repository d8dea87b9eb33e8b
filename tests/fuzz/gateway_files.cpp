// A configuration of the gateway, and a batch of its ledger: the first byte of an input says which
// of them the rest is.
#include "gateway/change/batch_codec.h"
#include "gateway/config/config_reader.h"

#include "fuzz/input.h"

using namespace cnet;
using namespace cnet::gateway;

namespace {

void readsAsConfig(const QByteArray &content)
{
    Findings findings(20);
    const ConfigFolders folders{QLatin1String("/etc"), QLatin1String("/var")};
    const auto config = readConfig(content, folders, findings);
    fuzz::require(config.has_value() == findings.isEmpty(), "a configuration, or a mistake");
    for (const Finding &finding : findings.first()) {
        fuzz::require(finding.line >= 1 && finding.column >= 1 && !finding.text.isEmpty(),
                      "a mistake has a place");
    }
    fuzz::require(!config || !config->sinks.isEmpty(), "there is a sink");
}

// What was understood is written and read again as the same.
void readsAsBatch(const QByteArray &bytes)
{
    const auto changes = readBatch(bytes);
    if (!changes) {
        return;
    }
    BatchWriter writer;
    for (const Change &change : *changes) {
        writer.add(change);
    }
    const auto again = readBatch(writer.finish());
    fuzz::require(again && again->size() == changes->size(), "all of it is read again");
    for (int i = 0; i < changes->size(); ++i) {
        const auto *fraction = std::get_if<double>(&changes->at(i).value);
        const bool isNoNumber = fraction != nullptr && *fraction != *fraction;
        const ChangeSource &source = *changes->at(i).source;
        const bool hasNoNumber = source.scale != source.scale || source.offset != source.offset;
        fuzz::require(isNoNumber || hasNoNumber || again->at(i) == changes->at(i),
                      "it is read again as it was");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    if (input.byte() == 'b') {
        readsAsBatch(input.rest());
    } else {
        readsAsConfig(input.rest());
    }
    return 0;
}
