// What comes from a broker to an edge node: the first byte of an input says what the rest is, bytes
// of a message, a host's word, or messages one after the other to a node that lives.
#include "gateway/sparkplug/host_state.h"
#include "gateway/sparkplug/metric_values.h"
#include "gateway/sparkplug/sparkplug_sink.h"

#include "fuzz/input.h"
#include "host/support/virtual_clock.h"
#include "sparkplug/support/fake_connection.h"

using namespace cnet;
using namespace cnet::gateway;

namespace {

void readsAsMessage(const QByteArray &bytes)
{
    const auto metrics = decodePayload(bytes);
    for (const CameMetric &metric : metrics.value_or(QVector<CameMetric>())) {
        for (int type = static_cast<int>(Datatype::Int16);
             type <= static_cast<int>(Datatype::String); ++type) {
            if (type == 5) {
                continue; // a type of 8 bits, which no tag has
            }
            const auto text = commandText(metric, static_cast<Datatype>(type));
            fuzz::require(!text || !text->isEmpty(), "a value has a text");
            fuzz::require(!text || !metric.datatype || *metric.datatype == quint32(type),
                          "its type is the metric's");
        }
    }
}

void readsAsHost(const QByteArray &bytes)
{
    HostState host;
    host.take("{\"online\":true,\"timestamp\":9007199254740992}");
    host.take(bytes);
    const auto word = QByteArray("{\"online\":true,\"timestamp\":9007199254740992}");
    host.take(word);
    fuzz::require(host.is() == HostState::Is::Online, "the newest word counts");
}

Change changeOf(const std::shared_ptr<const ChangeSource> &source, const Scalar &value)
{
    Change change;
    change.source = source;
    change.value = value;
    change.quality = Quality::Good;
    change.atMs = 1000;
    return change;
}

std::shared_ptr<ChangeSource> sourceOf(const char *tag, ValueKind kind)
{
    auto source = std::make_shared<ChangeSource>();
    source->line = QLatin1String("press");
    source->tag = QLatin1String(tag);
    source->type.kind = kind;
    return source;
}

void livesOn(fuzz::Input &input)
{
    static const char *const kTopics[] = {"spBv1.0/plant/NCMD/gate",
                                          "spBv1.0/plant/DCMD/gate/press.1",
                                          "spBv1.0/plant/DCMD/gate/press.2",
                                          "spBv1.0/plant/DCMD/gate/",
                                          "spBv1.0/STATE/",
                                          "spBv1.0/plant/NDEATH/gate",
                                          "x"};
    VirtualClock clock;
    SparkplugSettings settings;
    settings.group = QLatin1String("plant");
    settings.node = QLatin1String("gate");
    settings.takesCommands = true;
    auto connection = std::make_unique<FakeConnection>();
    FakeConnection &broker = *connection;
    SparkplugSink sink(settings, std::move(connection), clock);
    QObject::connect(&sink, &Sink::asked, [](const WriteRequest &request) {
        fuzz::require(!request.fault.isEmpty() ||
                          (request.line == QLatin1String("press") && !request.tag.isEmpty() &&
                           !request.value.isEmpty()),
                      "a request is about a tag, or has a fault");
    });
    sink.begin(QLatin1String("ledger"));
    qint64 number = 0;
    while (!input.atEnd()) {
        const bool isRetained = input.below(4) == 0;
        const char *const topic = kTopics[input.below(7)];
        broker.send(topic, input.bytes(), isRetained);
        clock.runFor(100);
        sink.take({{++number,
                    {changeOf(sourceOf("a", ValueKind::U16), qint64(number % 3)),
                     changeOf(sourceOf("b", ValueKind::String), QString::number(number))}}});
        broker.confirm();
    }
    spcheck::Checker checker({"plant", "gate", ""});
    checker.see(broker.stream);
    fuzz::require(checker.failed().isEmpty(), "it keeps the rules");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    switch (input.byte()) {
    case 'p':
        readsAsMessage(input.rest());
        break;
    case 's':
        readsAsHost(input.rest());
        break;
    default:
        livesOn(input);
    }
    return 0;
}
