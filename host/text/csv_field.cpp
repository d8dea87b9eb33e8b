#include "host/text/csv_field.h"

#include <algorithm>

namespace cnet {

namespace {

const char kQuote = '"';

bool isBlank(char letter, const CsvDialect &dialect)
{
    return letter == ' ' || letter == '\r' || (letter == '\t' && dialect.divider != '\t');
}

int behindBlanks(const QByteArray &text, int at, const CsvDialect &dialect)
{
    while (at < text.size() && isBlank(text.at(at), dialect)) {
        ++at;
    }
    return at;
}

bool isEnd(const QByteArray &text, int at, const CsvDialect &dialect)
{
    return at >= text.size() || text.at(at) == dialect.divider || text.at(at) == '\n';
}

int behindPlainText(const QByteArray &text, int at, const CsvDialect &dialect)
{
    while (!isEnd(text, at, dialect)) {
        ++at;
    }
    return at;
}

bool beginsQuoted(const QByteArray &text, int at, const CsvDialect &dialect)
{
    return dialect.quotes == CsvQuotes::Understood && at < text.size() && text.at(at) == kQuote;
}

// Two quotes are one that belongs to the text.
int closingQuote(const QByteArray &text, int at)
{
    int lines = 1;
    for (; at < text.size() && lines <= kCsvFieldLines; ++at) {
        if (text.at(at) == '\n') {
            ++lines;
        } else if (text.at(at) == kQuote && (at + 1 >= text.size() || text.at(at + 1) != kQuote)) {
            return at;
        } else if (text.at(at) == kQuote) {
            ++at;
        }
    }
    return -1;
}

// Characters, not bytes, for that is how editors count.
int characters(const QByteArray &text, int begin, int end)
{
    return static_cast<int>(std::count_if(text.cbegin() + begin, text.cbegin() + end,
                                          [](char byte) { return (byte & 0xC0) != 0x80; }));
}

// What of a field is text. Where the quotes are in disorder, all of it is shown.
QString textOf(const QByteArray &record, CsvField &field, const CsvDialect &dialect)
{
    const int first = behindBlanks(record, field.begin, dialect);
    const bool quoted = beginsQuoted(record, first, dialect) && field.trouble == CsvTrouble::None;
    const QByteArray raw = quoted
                               ? record.mid(first + 1, closingQuote(record, first + 1) - first - 1)
                                     .replace("\"\"", "\"")
                               : record.mid(field.begin, field.end - field.begin);
    const QString text = QString::fromUtf8(raw);
    if (text.contains(QChar(QChar::ReplacementCharacter)) && text.toUtf8() != raw) {
        field.trouble = CsvTrouble::NotUtf8;
    }
    field.quoted = quoted;
    return quoted ? text : text.trimmed();
}

// Moves a place over a part of a record.
void move(CsvField &place, const QByteArray &record, int begin, int end)
{
    int lineBegin = begin;
    for (int at = begin; at < end; ++at) {
        if (record.at(at) == '\n') {
            ++place.line;
            place.column = 1;
            lineBegin = at + 1;
        }
    }
    place.column += characters(record, lineBegin, end);
}

} // namespace

QString csvTroubleText(CsvTrouble trouble)
{
    switch (trouble) {
    case CsvTrouble::OpenQuote:
        return QLatin1String("the quote in front is not closed in its line, so the end of the "
                             "field is not known; a quote within a text is written as two in "
                             "quotes, for example \"5\"\" pipe\"");
    case CsvTrouble::TextBehindQuote:
        return QLatin1String("text behind the closing quote; a quote within a text is written as "
                             "two, for example \"5\"\" pipe\"");
    default:
        return QLatin1String("bytes that are no UTF-8, so nobody knows the letters; save the file "
                             "as UTF-8, for example as \"CSV UTF-8\"");
    }
}

int endOfCsvField(const QByteArray &text, int begin, const CsvDialect &dialect, CsvTrouble &trouble)
{
    trouble = CsvTrouble::None;
    const int first = behindBlanks(text, begin, dialect);
    if (!beginsQuoted(text, first, dialect)) {
        return behindPlainText(text, first, dialect);
    }
    const int close = closingQuote(text, first + 1);
    const int behind = close < 0 ? close : behindBlanks(text, close + 1, dialect);
    if (behind >= 0 && isEnd(text, behind, dialect)) {
        return behind;
    }
    const int feed = static_cast<int>(text.indexOf('\n', first));
    if (close >= 0 && (feed < 0 || close < feed)) {
        trouble = CsvTrouble::TextBehindQuote;
        return behindPlainText(text, behind, dialect);
    }
    trouble = CsvTrouble::OpenQuote;
    return feed < 0 ? static_cast<int>(text.size()) : feed;
}

CsvFields splitCsv(const QByteArray &record, int line, const CsvDialect &dialect)
{
    CsvFields fields;
    CsvField &place = fields.end;
    place.line = line;
    place.column = 1;
    for (int at = 0;; ++at) {
        CsvField field;
        field.begin = at;
        field.end = endOfCsvField(record, at, dialect, field.trouble);
        const int first = std::min(behindBlanks(record, at, dialect), field.end);
        move(place, record, at, first);
        field.line = place.line;
        field.column = place.column;
        move(place, record, first, field.end);
        field.text = textOf(record, field, dialect);
        fields.all.append(field);
        at = field.end;
        if (at >= record.size()) {
            place.begin = at;
            place.end = at;
            return fields;
        }
        ++place.column; // the divider
    }
}

QByteArray csvField(const QString &text, const CsvDialect &dialect, bool quoted)
{
    QByteArray raw = text.toUtf8();
    if (dialect.quotes == CsvQuotes::Literal) {
        return raw;
    }
    const bool needed = raw.contains(dialect.divider) || raw.contains(kQuote) ||
                        raw.contains('\n') || raw.contains('\r') || text != text.trimmed() ||
                        raw.startsWith('#');
    return quoted || needed ? kQuote + QByteArray(raw).replace("\"", "\"\"") + kQuote : raw;
}

QByteArray csvRecord(const QStringList &texts, const CsvDialect &dialect)
{
    QList<QByteArray> fields;
    for (const QString &text : texts) {
        fields.append(csvField(text, dialect));
    }
    return fields.join(dialect.divider);
}

} // namespace cnet
