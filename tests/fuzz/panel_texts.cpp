// What people type for the panel tool, what their files hold, and what a line brings. The first
// character of an input says what the rest is.
#include "fuzz/input.h"
#include "host/address/address.h"
#include "host/address/assignment.h"
#include "host/address/item.h"
#include "host/address/value_text.h"
#include "host/link/link_address.h"
#include "host/recipe/recipe_file.h"
#include "host/recipe/recipe_layout.h"
#include "host/wire/answer_collector.h"
#include "host/wire/characters.h"
#include "host/wire/fence_frame.h"
#include "host/wire/frame_words.h"
#include "host/wire/open_questions.h"
#include "ls_master_k_cnet/ls_master_k_cnet.h"

#include <algorithm>
#include <map>

namespace {

using namespace fuzz;
using namespace cnet;

const int kStation = 5; ///< of what names none

void add(RegisterCatalog &catalog, const QString &name, const QStringList &texts)
{
    if (const auto info = RegisterCatalog::read(name, texts)) {
        catalog.add(*info);
    }
}

/** The driver's registers, and two in forms that it has none of. */
const RegisterCatalog &registers()
{
    static const RegisterCatalog catalog = [] {
        RegisterCatalog all;
        add(all, QLatin1String("OCT"),
            QString::fromLatin1("OOO 10 77 1 0").split(QLatin1Char(' ')));
        add(all, QLatin1String("HEX"),
            QString::fromLatin1("HHH 0 FFF 1 1").split(QLatin1Char(' ')));
        QList<QString> names;
        intf_getRegListByType(1, names);
        intf_getRegListByType(0, names);
        for (const QString &name : names) {
            QList<QString> texts;
            intf_getRegDiscription(name, texts);
            add(all, name, QStringList(texts));
        }
        return all;
    }();
    return catalog;
}

/** What the driver says of an item, whatever it is. */
void checkItem(const Item &item)
{
    int number = 0;
    const int code = intf_checkAddr(item.reg.name, item.addressText(0), number,
                                    item.reg.isBit() ? -1 : 0, item.count, 1);
    require(code != kAddressValid || number == item.start, "the driver takes an item as it is");
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
    checkItem(*item);
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
    checkItem(assignment->item);
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

bool checkRecipeItem(const Item &item, QString & /*error*/)
{
    checkItem(item);
    return true;
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

void readWrittenRecipe(Input &input)
{
    readRecipe(input, RecipeUse::Write);
}

void readReadRecipe(Input &input)
{
    readRecipe(input, RecipeUse::Read);
}

void readLineSettings(const QString &text)
{
    QString error;
    const auto line = parseLineSettings(text, error);
    if (!line) {
        requireError(error);
        return;
    }
    const auto again = parseLineSettings(line->text(), error);
    require(again && again->text() == line->text(), "settings of a line come back as they were");
}

void readLink(Input &input)
{
    QString error;
    const QString text = QString::fromUtf8(input.rest());
    readLineSettings(text);
    const auto address = parseLinkAddress(text, error);
    if (!address) {
        requireError(error);
        return;
    }
    switch (address->kind) {
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

void requireCollector(const AnswerCollector &collector, int given)
{
    const QByteArray answer = collector.answer();
    require(answer.size() <= kLongestFrame, "an answer is bounded");
    require(collector.strayBytes() >= 0 && collector.strayBytes() <= given, "strays are counted");
    if (collector.hasBegun()) {
        require(answer.at(0) == kAck || answer.at(0) == kNak, "an answer has a head");
        require(answer.size() + collector.strayBytes() == given, "no byte is lost");
    }
    require(!collector.isComplete() || collector.hasBegun(), "noise is no answer");
}

/** The answers in some bytes, whatever their division and whatever length is expected. */
QList<QByteArray> answersIn(const QList<QByteArray> &chunks, int expected)
{
    QList<QByteArray> answers;
    AnswerCollector collector;
    int given = 0;
    for (QByteArray rest : chunks) {
        while (!rest.isEmpty()) {
            const int taken = collector.add(rest, expected);
            require(taken > 0 && taken <= rest.size(), "bytes are taken");
            given += taken;
            requireCollector(collector, given);
            rest.remove(0, taken);
            if (collector.isComplete()) {
                answers.append(collector.answer());
                collector.clear();
                given = 0;
            }
        }
    }
    return answers;
}

void collect(Input &input)
{
    const int expected = input.number() % 300;
    QList<QByteArray> chunks;
    QByteArray all;
    while (!input.atEnd()) {
        chunks.append(input.bytes(40));
        all += chunks.last();
    }
    require(answersIn(chunks, expected) == answersIn({all}, 0), "the division does not matter");
}

void judgeOpenQuestions(Input &input)
{
    const int station = 1;
    OpenQuestions open;
    while (!input.atEnd()) {
        const int choice = input.below(4);
        const QByteArray request = input.bytes(30);
        const AnswerShape shape = AnswerShape::toRequest(request, input.below(60));
        if (choice == 0) {
            open.asked(station, request, shape, 0);
            require(!open.isEmpty(station), "what was asked is open");
        } else if (choice == 1) {
            open.settle(station, request);
        } else if (choice == 2) {
            open.keep(station, request, shape);
        } else {
            const int form = open.freeFence(station, shape, request);
            require(form >= 0 && form < kFenceForms, "there is always a fence");
            open.clear(station);
            require(!open.confusable(station, request, shape), "what is clear confuses nothing");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    static const std::map<int, void (*)(Input &)> kReaders = {
        {'i', readItem},          {'a', readAssignment}, {'v', readValue},
        {'w', readWrittenRecipe}, {'r', readReadRecipe}, {'l', readLink},
        {'f', readFrame},         {'c', collect},        {'t', judgeOpenQuestions}};
    const auto reader = kReaders.find(input.byte());
    if (reader == kReaders.end()) {
        return -1; // not worth keeping
    }
    reader->second(input);
    return 0;
}
