// What people type for the panel tool, what their files hold, and what a line brings. The first
// character of an input says what the rest is.
#include "fuzz/input.h"
#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "host/address/address.h"
#include "host/wire/answer_collector.h"
#include "host/address/assignment.h"
#include "host/wire/frame_words.h"
#include "host/address/item.h"
#include "host/driver/item_check.h"
#include "host/wire/late_answers.h"
#include "host/link/link_address.h"
#include "host/recipe/recipe_file.h"
#include "host/recipe/recipe_layout.h"
#include "host/address/value_text.h"

#include <QSet>

#include <limits>

namespace {

using namespace fuzz;
using namespace cnet;

const int kStation = 5; ///< of what names none

int listRegisters(int type, QList<QString> &names)
{
    if (type == 1) {
        names.append(QLatin1String("OCT"));
        names.append(QLatin1String("HEX"));
    }
    return intf_getRegListByType(type, names);
}

int describeRegister(const QString &name, QList<QString> &texts)
{
    if (name == QLatin1String("OCT")) {
        texts = {QLatin1String("OOO"), QLatin1String("10"), QLatin1String("77"), QLatin1String("1"),
                 QLatin1String("0")};
    } else if (name == QLatin1String("HEX")) {
        texts = {QLatin1String("HHH"), QLatin1String("0"), QLatin1String("FFF"), QLatin1String("1"),
                 QLatin1String("1")};
    }
    return intf_getRegDiscription(name, texts);
}

const DriverFunctions &driverFunctions()
{
    static const DriverFunctions functions = [] {
        DriverFunctions all;
        all.getRegListByType = &listRegisters;
        all.getRegDiscription = &describeRegister;
        all.checkAddr = &intf_checkAddr;
        all.checkAddrValidity = &intf_checkAddrValidity;
        return all;
    }();
    return functions;
}

/** The driver's registers, and two in forms that it has none of. */
const RegisterCatalog &registers()
{
    static const RegisterCatalog catalog(driverFunctions());
    return catalog;
}

void requireError(const QString &error)
{
    require(!error.isEmpty(), "a wrong text is explained");
    require(error.size() < 20000, "a message is bounded");
}

bool sameItem(const Item &left, const Item &right)
{
    return left.station == right.station && left.reg.name == right.reg.name &&
           left.start == right.start && left.count == right.count;
}

void requireItem(const Item &item)
{
    require(item.station >= 0 && item.station <= kHighestStation, "a station is one");
    require(item.start >= item.reg.lowest && item.start <= item.reg.highest, "a start is within");
    require(item.count >= 1 && item.count <= item.reg.highest - item.start + 1, "a count fits");
}

void requirePieces(const Item &item, int blockWords)
{
    int next = 0;
    for (const ItemBlock &piece : blocksOf(item, blockWords)) {
        require(piece.offset == next && piece.count >= 1, "pieces follow one another");
        require(item.reg.isBit() || piece.count <= blockWords, "a piece fits into a block");
        next += piece.count;
    }
    require(next == item.count, "pieces are the whole item");
}

void readItem(Input &input)
{
    const int blockWords = 1 + input.below(80);
    QString error;
    const auto item = parseItem(QString::fromUtf8(input.rest()), kStation, registers(), error);
    if (!item) {
        requireError(error);
        return;
    }
    requireItem(*item);
    requirePieces(*item, blockWords);
    const auto again = parseItem(item->text(), 0, registers(), error);
    require(again && sameItem(*again, *item), "an item survives its text");
    if (!checkItem(driverFunctions(), *item, Access::Write, error)) {
        requireError(error);
    }
}

void readAssignment(Input &input)
{
    QString error;
    const auto assignment =
        parseAssignment(QString::fromUtf8(input.rest()), kStation, registers(), error);
    if (!assignment) {
        requireError(error);
        return;
    }
    require(assignment->values.size() == assignment->item.count, "each place has its value");
    for (const quint16 value : assignment->values) {
        require(!assignment->item.reg.isBit() || value <= 1, "a bit is 0 or 1");
    }
    require(!assignment->text().isEmpty(), "an assignment has a text");
    if (!checkItem(driverFunctions(), assignment->item, Access::Write, error)) {
        requireError(error);
    }
}

void readValue(Input &input)
{
    const bool isBit = input.below(2) == 1;
    const quint16 other = static_cast<quint16>(input.byte() * 256 + input.byte());
    const QString text = QString::fromUtf8(input.rest());
    const auto value = parseValue(text, isBit);
    require(!isBit || !value || *value <= 1, "a bit is 0 or 1");
    const QString like = valueTextLike(other, text);
    require(parseValue(like, false) == std::optional<quint16>(other), "a value survives its text");
    const QString quoted = quotable(text);
    require(quoted.size() <= 63, "a quote is short");
    for (const QChar letter : quoted) {
        require(letter.isPrint(), "a quote is printable");
    }
}

bool checkRecipeItem(const Item &item, QString &error)
{
    return checkItem(driverFunctions(), item, Access::Write, error);
}

std::optional<RecipeFile> parseRecipe(const QByteArray &content, RecipeUse use, QString &error)
{
    return RecipeFile::parse(content, use, kStation, registers(), &checkRecipeItem, error);
}

/** The recipe with a value for each place. */
QByteArray filledRecipe(const RecipeFile &file, quint16 first)
{
    QVector<QVector<quint16>> values;
    for (const RecipeItem &item : file.items()) {
        QVector<quint16> row;
        for (int i = 0; i < item.item.count; ++i) {
            row.append(first++);
        }
        values.append(row);
    }
    return file.filled(values);
}

void requireFilled(const RecipeFile &file, const QByteArray &filled, quint16 first)
{
    QString error;
    const auto again = parseRecipe(filled, RecipeUse::Write, error);
    require(again && again->items().size() == file.items().size(), "a filled recipe is a recipe");
    for (int i = 0; i < file.items().size(); ++i) {
        const RecipeItem &item = again->items().at(i);
        require(sameItem(item.item, file.items().at(i).item), "a filled recipe has the same items");
        for (const quint16 value : item.values) {
            require(value == first++, "a filled recipe has the values");
        }
    }
}

/** Each word has a place of its own in the buffer, in the order of the addresses. */
void requireLayout(const RecipeFile &file, int blockWords)
{
    const RecipeLayout layout = layOutRecipe(file.items(), registers(), 7, blockWords);
    int next = 0;
    for (const _RCP_VAR_PRO &item : layout.items) {
        require(item.bufOffset == next && item.count >= 1, "values lie without gaps");
        require(item.count <= blockWords, "an item fits into a block");
        next += item.count;
    }
    require(next == layout.words, "every word has a place");
    require(layout.firstWord.size() == file.items().size(), "each line has a place");
}

void readRecipe(Input &input, RecipeUse use)
{
    const int blockWords = 1 + input.below(60);
    const quint16 first = static_cast<quint16>(input.byte() * 257);
    const QByteArray content = input.rest();
    QString error;
    const auto file = parseRecipe(content, use, error);
    if (!file) {
        requireError(error);
        return;
    }
    int words = 0;
    for (const RecipeItem &item : file->items()) {
        requireItem(item.item);
        require(!item.item.reg.isBit(), "a recipe holds words");
        require(item.values.isEmpty() ? use == RecipeUse::Read
                                      : item.values.size() == item.item.count,
                "a line has all its values, or none");
        words += item.item.count;
    }
    requireLayout(*file, blockWords);
    if (words < 3000) { // a line may ask for ten thousand
        requireFilled(*file, filledRecipe(*file, first), first);
    }
}

void readLink(Input &input)
{
    QString error;
    const auto address = parseLinkAddress(QString::fromUtf8(input.rest()), error);
    if (!address) {
        requireError(error);
        return;
    }
    switch (address->kind) {
    case LinkAddress::Kind::Sim:
        break;
    case LinkAddress::Kind::Tcp:
        require(address->port > 0 && !address->host.isEmpty(), "a network address is whole");
        break;
    case LinkAddress::Kind::Serial:
        require(!address->device.isEmpty(), "a line has a device");
        break;
    }
    require(address->line.characterMicroseconds() > 0, "a character takes time");
    require(address->line.text().count(QLatin1Char(',')) == 3, "a line has four settings");
}

void readFrame(Input &input)
{
    const QByteArray frame = input.rest();
    require(!frameInWords(frame).isEmpty(), "a frame has words");
    const auto code = refusalCode(frame);
    require(!code || !refusalInWords(*code).isEmpty(), "a refusal has words");
    require(hexText(frame).size() == std::max(0, static_cast<int>(frame.size()) * 3 - 1),
            "each byte has two digits");
}

void requireCollector(const AnswerCollector &collector, int expected, int given)
{
    const QByteArray answer = collector.answer();
    require(answer.size() <= std::max({expected + kBlockCheckLength, kRefusalLength + 2, 256}),
            "an answer is bounded");
    require(collector.strayBytes() >= 0 && collector.strayBytes() <= given, "strays are counted");
    if (collector.hasBegun()) {
        require(answer.at(0) == kAck || answer.at(0) == kNak, "an answer has a head");
        require(answer.size() + collector.strayBytes() == given, "no byte is lost");
    }
    require(!collector.isComplete() || collector.hasBegun(), "noise is no answer");
}

/** The division of the bytes does not matter. */
void collect(Input &input)
{
    const int expected = input.number() % 300;
    AnswerCollector divided;
    AnswerCollector whole;
    divided.begin(expected);
    whole.begin(expected);
    QByteArray all;
    while (!input.atEnd()) {
        const QByteArray piece = input.bytes(40);
        all += piece;
        require(divided.add(piece) == divided.isComplete(), "completeness is told");
        requireCollector(divided, expected, static_cast<int>(all.size()));
    }
    whole.add(all);
    require(whole.answer() == divided.answer() && whole.strayBytes() == divided.strayBytes() &&
                whole.isComplete() == divided.isComplete(),
            "the division does not matter");
}

void judgeLateAnswers(Input &input)
{
    LateAnswers late;
    QSet<QByteArray> missed;
    while (!input.atEnd()) {
        const int choice = input.below(4);
        const QByteArray request = input.bytes(12);
        if (choice != 0) {
            late.missed(request);
            missed.insert(request);
            continue;
        }
        const LateAnswers::Verdict verdict = late.judge(request);
        require(verdict.underway >= 0 && (verdict.usable || verdict.underway > 0),
                "only a missed answer makes one doubtful");
        require(late.judge(request).usable, "what was missed is forgotten");
        belongsTogether(request, input.bytes(12));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    switch (input.byte()) {
    case 'i':
        readItem(input);
        break;
    case 'a':
        readAssignment(input);
        break;
    case 'v':
        readValue(input);
        break;
    case 'w':
        readRecipe(input, RecipeUse::Write);
        break;
    case 'r':
        readRecipe(input, RecipeUse::Read);
        break;
    case 'l':
        readLink(input);
        break;
    case 'f':
        readFrame(input);
        break;
    case 'c':
        collect(input);
        break;
    case 't':
        judgeLateAnswers(input);
        break;
    default:
        return -1; // not worth keeping
    }
    return 0;
}
