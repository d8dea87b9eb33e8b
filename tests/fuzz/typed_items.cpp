// Items with types as people type them, their values, and the words of a PLC that they stand for.
// The first character of an input says what the rest is.
#include "fuzz/input.h"
#include "host/support/test_registers.h"
#include "host/tag/plausible_readings.h"
#include "host/tag/tag_values.h"
#include "host/tag/tag_writing.h"
#include "host/tag/typed_item.h"
#include "host/tag/value_format.h"
#include "host/value/value_codec.h"

namespace {

using namespace fuzz;
using namespace cnet;

const int kMostWords = 58;

const RegisterCatalog &registers()
{
    static const RegisterCatalog catalog = testCatalog();
    return catalog;
}

void requireError(const QString &error)
{
    require(!error.isEmpty(), "a wrong text is explained");
    require(error.size() < 20000, "a message is bounded");
}

QVector<quint16> wordsOf(Input &input, int most)
{
    QVector<quint16> words;
    while (!input.atEnd() && words.size() < most) {
        const int low = input.byte();
        words.append(static_cast<quint16>(low | input.byte() << 8));
    }
    return words;
}

void requireTag(const Tag &tag)
{
    const Item &item = tag.item;
    require(tag.count >= 1 && item.count == tag.count * tag.type.unitsPerValue(), "units fit");
    require(item.start + item.count - 1 <= item.reg.highest, "no value is beyond the last address");
    QString error;
    const auto again = parseTypedItem(typedItemText(tag), 9, registers(), error);
    require(again && typedItemText(*again) == typedItemText(tag), "an item's text is its own");
}

void readItem(Input &input)
{
    QString error;
    const auto tag = parseTypedItem(QString::fromUtf8(input.line()), 1, registers(), error);
    if (!tag) {
        requireError(error);
        return;
    }
    requireTag(*tag);
    if (tag->item.count > 100) {
        return;
    }
    const QVector<quint16> words = wordsOf(input, tag->item.count);
    const QVector<bool> known(static_cast<int>(words.size()), true);
    for (const TagValue &own : readTag(*tag, words, known, Quality::Good)) {
        require(own.value.isGood() == (own.quality == Quality::Good), "the quality says all");
        require(!shownText(*tag, own.value).isEmpty(), "every value has a text");
    }
}

/** What is read back of a write is what was asked for. */
void requireSame(const TypedAssignment &asked, const QVector<quint16> &words)
{
    const auto values = decodeValues(asked.tag.type, words);
    require(values.size() == asked.values.size(), "each value has its words");
    QString error;
    for (int i = 0; i < values.size(); ++i) {
        require(values.at(i).isGood(), "what was written can be read");
        const auto again = encodeValue(asked.tag.type, values.at(i).value, error);
        const int step = asked.tag.type.unitsPerValue();
        require(again && *again == words.mid(i * step, step), "and is written the same again");
        const bool exact = asked.tag.type.isWhole() && isNumber(asked.values.at(i)) &&
                           !std::holds_alternative<double>(asked.values.at(i));
        require(!exact || approximately(values.at(i).value) == approximately(asked.values.at(i)),
                "a whole number is not another one");
    }
}

void readAssignment(Input &input)
{
    QString error;
    const auto asked = parseTypedAssignment(QString::fromUtf8(input.rest()), 1, registers(), error);
    if (!asked) {
        requireError(error);
        return;
    }
    requireTag(asked->tag);
    if (asked->values.size() > 100) {
        return;
    }
    const auto sent = assignmentsOf(asked->tag, asked->values, registers(), kMostWords, error);
    if (!sent) {
        requireError(error);
        return;
    }
    QVector<quint16> words;
    for (const Assignment &assignment : *sent) {
        require(assignment.item.count == assignment.values.size(), "as many values as places");
        words += assignment.values;
    }
    const ValueKind kind = asked->tag.type.kind;
    if (!asked->tag.isScaled() && kind != ValueKind::Bit && kind != ValueKind::Bool &&
        kind != ValueKind::String) {
        requireSame(*asked, words);
    }
}

/** The text of what words stand for, typed in again, stands for the same. */
void readWords(Input &input)
{
    QString error;
    Tag tag;
    const auto type = parseValueType(QString::fromUtf8(input.line()), error);
    if (!type) {
        requireError(error);
        return;
    }
    tag.type = *type;
    tag.item = testItem("D_W", 0, 1);
    for (const TypedValue &value : decodeValues(tag.type, wordsOf(input, 60))) {
        const auto typed =
            value.isKnown() ? parseTyped(tag, typedText(tag, value), error) : std::nullopt;
        const auto words = typed ? encodeValue(tag.type, *typed, error) : std::nullopt;
        require(!value.isKnown() || words, "a value's text can be typed");
        require(!words || tag.type.kind == ValueKind::Bit || decodeValue(tag.type, *words) == value,
                "and is that value");
    }
}

void identify(Input &input)
{
    const QVector<quint16> words = wordsOf(input, 60);
    if (words.isEmpty()) {
        return;
    }
    const Item item = testItem("D_W", 0, static_cast<int>(words.size()));
    for (const PossibleReading &reading : possibleReadings(item, words)) {
        requireTag(reading.tag);
        require(reading.isPlausible == reading.doubt.isEmpty(), "a doubt has its reason");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    switch (input.byte()) {
    case 'i':
        readItem(input);
        return 0;
    case 'a':
        readAssignment(input);
        return 0;
    case 'w':
        readWords(input);
        return 0;
    case 'p':
        identify(input);
        return 0;
    default:
        return -1; // not worth keeping
    }
}
