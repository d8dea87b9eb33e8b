#include "view/recipes/sheet/recipe_mistakes.h"

#include <QRegularExpression>

#include <algorithm>

namespace cnet::view {

namespace {

// Each mistake costs reading the file once more.
constexpr qint64 kLongestForAll = 256 * 1024;

const CsvRecord *recordAt(const CsvFile &csv, int line)
{
    const auto &all = csv.records();
    const auto found = std::find_if(
        all.cbegin(), all.cend(), [line](const CsvRecord &record) { return record.line == line; });
    return found == all.cend() ? nullptr : &*found;
}

int placeOf(const CsvFields &fields, const QString &name)
{
    for (int i = 0; i < fields.all.size(); ++i) {
        if (fields.all.at(i).text.compare(name, Qt::CaseInsensitive) == 0) {
            return i;
        }
    }
    return -1;
}

CsvFields headerOf(const CsvFile &csv)
{
    for (const CsvRecord &record : csv.records()) {
        if (record.kind == CsvKind::Fields) {
            return splitCsv(record.text, record.line, csv.dialect());
        }
    }
    return {};
}

// A message quotes what it is about: a field, or an item that is made of several of them.
int columnOf(const CsvFile &csv, int line, const QString &message)
{
    const CsvRecord *const record = recordAt(csv, line);
    if (record == nullptr) {
        return 1;
    }
    static const QRegularExpression quoted(QLatin1String("'([^']*)'"));
    const CsvFields fields = splitCsv(record->text, record->line, csv.dialect());
    auto quotes = quoted.globalMatch(message);
    while (quotes.hasNext()) {
        const int place = placeOf(fields, quotes.next().captured(1));
        if (place >= 0) {
            return fields.at(place).column;
        }
    }
    const CsvFields header = headerOf(csv);
    const bool isCount = message.contains(QLatin1String(" values, found "));
    const int place = placeOf(header, QLatin1String(isCount ? "count" : "address"));
    const bool isHeader = !header.all.isEmpty() && header.end.line == line;
    return place >= 0 && !isHeader ? fields.at(place).column : std::max(1, fields.at(0).column);
}

Finding findingOf(const CsvFile &csv, const QString &error)
{
    Finding finding;
    const auto colon = static_cast<int>(error.indexOf(QLatin1Char(':')));
    finding.line = std::max(1, error.left(colon).toInt());
    finding.text = error.mid(colon + 1).trimmed();
    finding.column = columnOf(csv, finding.line, finding.text);
    return finding;
}

bool isItem(const QByteArray &content, int line)
{
    const CsvFile csv = CsvFile::read(content, CsvDivider::Comma, CsvQuotes::Literal);
    const CsvRecord *const record = recordAt(csv, line);
    const CsvFields header = headerOf(csv);
    return record != nullptr && record->kind == CsvKind::Fields && !header.all.isEmpty() &&
           line > header.end.line;
}

// The others keep their numbers.
void leaveOut(QByteArray &content, int line)
{
    auto begin = static_cast<int>(content.startsWith("\xEF\xBB\xBF") ? 3 : 0);
    for (int i = 1; i < line; ++i) {
        begin = static_cast<int>(content.indexOf('\n', begin)) + 1;
    }
    const auto feed = static_cast<int>(content.indexOf('\n', begin));
    const auto end = feed < 0 ? static_cast<int>(content.size()) : feed;
    content.replace(begin, end - begin, "#");
}

} // namespace

std::optional<RecipeFile> readRecipe(const QByteArray &content, const RecipeReading &reading,
                                     QVector<Finding> &mistakes)
{
    mistakes.clear();
    const CsvFile whole = CsvFile::read(content, CsvDivider::Comma, CsvQuotes::Literal);
    QByteArray rest = content;
    while (mistakes.size() < kMostMistakes) {
        QString error;
        auto file = RecipeFile::parse(rest, RecipeUse::Read, reading.station, reading.registers,
                                      reading.check, error);
        if (file) {
            return mistakes.isEmpty() ? file : std::nullopt;
        }
        const Finding finding = findingOf(whole, error);
        // Without its wrong lines a file may have no items; that is no mistake of its own.
        if (!mistakes.isEmpty() && !isItem(rest, finding.line)) {
            break;
        }
        mistakes.append(finding);
        if (!isItem(rest, finding.line) || content.size() > kLongestForAll) {
            break;
        }
        leaveOut(rest, finding.line);
    }
    std::sort(mistakes.begin(), mistakes.end(),
              [](const Finding &left, const Finding &right) { return left.line < right.line; });
    return std::nullopt;
}

} // namespace cnet::view
