// Requests to write from outside, MQTT messages that bring them, and the audit log that is read at
// the start: the first byte of an input says which of them the rest is.
#include "gateway/mqtt/command_reader.h"
#include "gateway/write/allowed_values.h"
#include "gateway/write/audit_line.h"

#include "fuzz/input.h"
#include "host/support/test_registers.h"
#include "host/tag/typed_item.h"

using namespace cnet;
using namespace cnet::gateway;

namespace {

const double kLeast = -20;
const double kMost = 179.95;

TagSet tags()
{
    QVector<Tag> tags;
    for (const char *text :
         {"D_W:10@u16*0.1", "D_W:20@i16", "D_W:30*4@i32*0.1-5", "D_W:50@u64", "D_W:60@f32",
          "D_W:70@string8", "D_W:80@bit3", "D_W:90@enum", "D_W:100@bcd8", "M_bit:3.5@bool"}) {
        QString error;
        Tag tag = parseTypedItem(QLatin1String(text), 1, testCatalog(), error).value_or(Tag());
        // Numbers have bounds, and others take none.
        const bool isNumber = tags.size() < 5;
        tag.name = QLatin1String(isNumber ? "n" : "t") + QString::number(tags.size());
        tags.append(tag);
    }
    return TagSet(tags);
}

AllowedValues allowedValues()
{
    AllowRule rule;
    rule.pattern = QLatin1String("*");
    AllowRule limited;
    limited.pattern = QLatin1String("n*");
    limited.min = kLeast;
    limited.max = kMost;
    return {
        {rule, limited}, tags(), testCatalog(), 60, [](const Item &, QString &) { return true; }};
}

// What may go out fits its place; a refusal has its reason.
void readsAsRequest(fuzz::Input &input)
{
    static const AllowedValues values = allowedValues();
    const QString name = QString::fromUtf8(input.line());
    QString error;
    const auto plan = values.plan(name, QString::fromUtf8(input.rest()), error);
    fuzz::require(plan || !error.isEmpty(), "a refusal has its reason");
    fuzz::require(error.size() < 20000, "a message is bounded");
    if (!plan) {
        return;
    }
    fuzz::require(plan->assignments.size() == 1, "one value is one write");
    const Assignment &sent = plan->assignments.first();
    fuzz::require(sent.item.count == sent.values.size(), "as many values as places");
    if (plan->tag.name.startsWith(QLatin1Char('n'))) {
        fuzz::require(compareNumber(plan->wanted, kLeast) >= 0 &&
                          compareNumber(plan->wanted, kMost) <= 0,
                      "it is within its bounds");
    }
}

void readsAsMessage(fuzz::Input &input)
{
    QString error;
    static const auto topic =
        TopicTemplate::parse(QLatin1String("p/{line}/{tag}/set"), QString(), error);
    MqttMessage message;
    message.topic = QString::fromUtf8(input.line());
    message.isRetained = input.byte() == 'r';
    message.payload = input.rest();
    const auto command = readCommand(*topic, message);
    if (!command) {
        return;
    }
    fuzz::require(!command->fault.isEmpty() || !command->request.value.isEmpty() ||
                      message.payload.contains('{'),
                  "there is a value, or a fault");
    fuzz::require(command->request.id.size() <= 200, "an id is bounded");
    fuzz::require((command->request.arrival == WriteRequest::Arrival::Retained) ==
                      message.isRetained,
                  "a retained message is known as one");
}

// What was understood is written and read again as the same.
void readsAsAuditLine(const QByteArray &line)
{
    const auto read = readAuditLine(line);
    if (!read || read->what == AuditLine::What::Request) {
        return;
    }
    const QByteArray written = auditLine(read->answer);
    const auto again = readAuditLine(written);
    fuzz::require(again && again->answer.outcome == read->answer.outcome, "it is read again");
    for (const QChar letter : QString::fromUtf8(written)) {
        fuzz::require(letter.isPrint() || letter.isSurrogate(), "nothing that a terminal obeys");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    switch (input.byte()) {
    case 'r':
        readsAsRequest(input);
        return 0;
    case 'm':
        readsAsMessage(input);
        return 0;
    case 'l':
        readsAsAuditLine(input.rest());
        return 0;
    default:
        return -1; // not worth keeping
    }
}
