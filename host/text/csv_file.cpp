#include "host/text/csv_file.h"

#include <algorithm>

namespace cnet {

namespace {

const char kMark[] = "\xEF\xBB\xBF";

// Blanks of other alphabets count as Qt has it.
CsvKind kindOf(const QByteArray &text, CsvQuotes quotes)
{
    int at = 0;
    while (at < text.size() && static_cast<unsigned char>(text.at(at)) <= ' ' &&
           QChar::isSpace(static_cast<unsigned char>(text.at(at)))) {
        ++at;
    }
    QByteArray rest = text.mid(at, 8);
    if (!rest.isEmpty() && static_cast<unsigned char>(rest.at(0)) >= 0x80) {
        rest = QString::fromUtf8(text).trimmed().left(8).toUtf8();
    }
    if (quotes == CsvQuotes::Understood && rest.startsWith('"')) {
        rest = rest.mid(1).trimmed();
        return rest.startsWith('#') ? CsvKind::Comment : CsvKind::Fields;
    }
    return rest.isEmpty()         ? CsvKind::Blank
           : rest.startsWith('#') ? CsvKind::Comment
                                  : CsvKind::Fields;
}

// Where the record that begins at `begin` ends: at a line feed, or at the end of the content.
int endOfRecord(const QByteArray &content, int begin, const CsvDialect &dialect)
{
    const int feed = static_cast<int>(content.indexOf('\n', begin));
    const int lineEnd = feed < 0 ? static_cast<int>(content.size()) : feed;
    const auto first = content.cbegin() + begin;
    const auto last = content.cbegin() + lineEnd;
    if (dialect.quotes == CsvQuotes::Literal || std::find(first, last, '"') == last ||
        kindOf(content.mid(begin, lineEnd - begin), CsvQuotes::Literal) == CsvKind::Comment) {
        return lineEnd;
    }
    for (int at = begin;; ++at) {
        CsvTrouble trouble = CsvTrouble::None;
        at = endOfCsvField(content, at, dialect, trouble);
        if (at >= content.size() || content.at(at) == '\n') {
            return at;
        }
    }
}

// Headings have none of them within, so the most frequent one divides.
char dividerOf(const QByteArray &line)
{
    char best = ',';
    for (const char divider : {';', '\t'}) {
        if (line.count(divider) > line.count(best)) {
            best = divider;
        }
    }
    return best;
}

// Blanks around a field are somebody's way to align columns.
QByteArray replaced(const QByteArray &record, const CsvField &field, const QString &text,
                    const CsvDialect &dialect)
{
    const QByteArray before = record.mid(field.begin, field.end - field.begin);
    const auto isText = [](char byte) { return byte != ' ' && byte != '\t'; };
    const auto first = std::find_if(before.cbegin(), before.cend(), isText);
    const auto last = std::find_if(before.crbegin(), before.crend(), isText);
    const int leading = static_cast<int>(first - before.cbegin());
    const int trailing = first == before.cend() ? 0 : static_cast<int>(last - before.crbegin());
    return before.left(leading) + csvField(text, dialect, field.quoted) + before.right(trailing);
}

char detectDivider(const QByteArray &content, CsvQuotes quotes)
{
    for (int at = 0; at < content.size();) {
        const int feed = static_cast<int>(content.indexOf('\n', at));
        const int end = feed < 0 ? static_cast<int>(content.size()) : feed;
        const QByteArray line = content.mid(at, end - at);
        if (kindOf(line, quotes) == CsvKind::Fields) {
            return dividerOf(line);
        }
        at = end + 1;
    }
    return ',';
}

} // namespace

CsvFile CsvFile::read(const QByteArray &content, CsvDivider divider, CsvQuotes quotes)
{
    CsvFile file;
    file.m_hasMark = content.startsWith(kMark);
    const QByteArray text = file.m_hasMark ? content.mid(3) : content;
    file.m_dialect.quotes = quotes;
    file.m_dialect.divider = divider == CsvDivider::Comma ? ',' : detectDivider(text, quotes);
    int line = 1;
    for (int at = 0; at <= text.size();) {
        const int end = endOfRecord(text, at, file.m_dialect);
        CsvRecord record;
        record.line = line;
        record.text = text.mid(at, end - at);
        record.endLength = end < text.size() ? 1 : 0;
        line += 1 + static_cast<int>(record.text.count('\n'));
        if (record.endLength == 1 && record.text.endsWith('\r')) {
            record.text.chop(1);
            record.endLength = 2;
        }
        record.kind = kindOf(record.text, quotes);
        file.m_records.append(record);
        at = end + 1;
    }
    return file;
}

CsvFields CsvFile::fields(int record) const
{
    return splitCsv(m_records.at(record).text, m_records.at(record).line, m_dialect);
}

QByteArray CsvFile::content() const
{
    QByteArray content = m_hasMark ? QByteArray(kMark) : QByteArray();
    for (const CsvRecord &record : m_records) {
        content += record.text;
        content += record.endLength == 2 ? "\r\n" : record.endLength == 1 ? "\n" : "";
    }
    return content;
}

void CsvFile::setFields(int record, int first, const QStringList &texts)
{
    QByteArray &raw = m_records[record].text;
    const CsvFields fields = splitCsv(raw, 1, m_dialect);
    QByteArray filled;
    int copied = 0;
    for (int i = 0; i < texts.size(); ++i) {
        const int index = first + i;
        if (index < fields.all.size()) {
            const CsvField &old = fields.all.at(index);
            filled += raw.mid(copied, old.begin - copied);
            filled += texts.at(i).isNull() ? raw.mid(old.begin, old.end - old.begin)
                                           : replaced(raw, old, texts.at(i), m_dialect);
            copied = old.end;
            continue;
        }
        const int missing = i == 0 ? index - static_cast<int>(fields.all.size()) + 1 : 1;
        filled += raw.mid(copied) + QByteArray(missing, m_dialect.divider) +
                  csvField(texts.at(i), m_dialect);
        copied = static_cast<int>(raw.size());
    }
    raw = filled + raw.mid(copied);
}

void CsvFile::remove(int record)
{
    m_records[record].text.clear();
    m_records[record].endLength = 0;
    m_records[record].kind = CsvKind::Blank;
}

void CsvFile::appendRaw(CsvKind kind, const QByteArray &text)
{
    const int endLength = m_records.isEmpty() ? 1 : std::max(1, m_records.first().endLength);
    // Behind the last line end of a file there is a record without anything.
    const bool replaces =
        !m_records.isEmpty() && m_records.last().endLength == 0 && m_records.last().text.isEmpty();
    if (replaces) {
        m_records.removeLast();
    } else if (!m_records.isEmpty() && m_records.last().endLength == 0) {
        m_records.last().endLength = endLength;
    }
    m_records.append({kind, 0, text, endLength});
}

void CsvFile::append(const QStringList &texts)
{
    appendRaw(CsvKind::Fields, csvRecord(texts, m_dialect));
}

void CsvFile::appendComment(const QString &text)
{
    appendRaw(CsvKind::Comment, "# " + text.toUtf8());
}

QString csvDividerText(char divider)
{
    return QLatin1String(divider == ';' ? "semicolons" : divider == '\t' ? "tabs" : "commas");
}

} // namespace cnet
