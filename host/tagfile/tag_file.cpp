#include "host/tagfile/tag_file.h"

#include "host/address/value_text.h"
#include "host/tagfile/tag_row.h"
#include "host/tagfile/tag_warnings.h"
#include "host/text/near_miss.h"

#include <algorithm>

namespace cnet {

namespace {

const char kExample[] = "for example name,register,address";

int countWithText(const CsvFields &fields)
{
    int count = static_cast<int>(fields.all.size());
    while (count > 0 && fields.all.at(count - 1).text.isEmpty() &&
           fields.all.at(count - 1).trouble == CsvTrouble::None) {
        --count;
    }
    return count;
}

} // namespace

TagFile::TagFile(const TagReading &reading)
    : m_station(reading.station)
    , m_places(kTagColumns, -1)
    , m_mistakes(reading.limit)
    , m_warnings(reading.limit)
{}

TagFile TagFile::parse(const QByteArray &content, const TagReading &reading)
{
    TagFile file(reading);
    file.m_csv = CsvFile::read(content, CsvDivider::Detected, CsvQuotes::Understood);
    for (int i = 0; i < file.m_csv.records().size(); ++i) {
        const CsvRecord &record = file.m_csv.records().at(i);
        // A spreadsheet's "Unicode text" has one for each letter.
        if (record.text.contains('\0')) {
            file.m_mistakes.add({record.line, 1, QString(),
                                 QLatin1String("a zero byte, so this is no text in UTF-8; save the "
                                               "file as UTF-8, for example as \"CSV UTF-8\"")});
            break;
        }
        if (record.kind != CsvKind::Fields) {
            continue;
        }
        const bool goesOn = file.m_header < 0 ? file.readHeader(i) : file.readRow(i, reading);
        if (!goesOn) {
            break;
        }
    }
    file.finish(reading);
    return file;
}

void TagFile::complain(const CsvField &place, const QString &column, const QString &text)
{
    m_mistakes.add({place.line, place.column, column, text});
}

// Without a column that every tag needs, each row would be wrong for the same reason.
bool TagFile::readHeader(int record)
{
    m_header = record;
    const CsvFields fields = m_csv.fields(record);
    m_columns = countWithText(fields);
    for (int i = 0; i < m_columns; ++i) {
        const CsvField &field = fields.all.at(i);
        const QString heading = field.text.trimmed();
        const auto column = tagColumnOf(heading);
        if (heading.isEmpty() || heading.startsWith(QLatin1Char('#'))) {
            continue;
        }
        const QString quoted = quotable(heading);
        if (field.trouble != CsvTrouble::None) {
            complain(field, QString(), csvTroubleText(field.trouble));
        } else if (!column) {
            complain(field, quoted,
                     QString::fromLatin1("no such column; expected some of %1%2")
                         .arg(tagColumnNames().join(QLatin1Char(' ')),
                              nearMissHint(heading, tagColumnNames())));
        } else if (m_places.at(static_cast<int>(*column)) >= 0) {
            complain(field, quoted,
                     QLatin1String("the column is there twice, and nobody knows which one is "
                                   "meant; remove one, or begin its heading with #"));
        } else {
            m_places[static_cast<int>(*column)] = i;
        }
    }
    bool complete = true;
    for (const TagColumn column : {TagColumn::Name, TagColumn::Register, TagColumn::Address}) {
        if (m_places.at(static_cast<int>(column)) < 0) {
            complain(fields.end, tagColumnName(column),
                     QString::fromLatin1("the column is missing, and every tag needs it; the first "
                                         "line names the columns, %1")
                         .arg(QLatin1String(kExample)));
            complete = false;
        }
    }
    return complete;
}

bool TagFile::isFirstOf(const QString &name, const CsvField &place)
{
    const auto before = m_lines.constFind(name);
    if (before == m_lines.cend()) {
        m_lines.insert(name, place.line);
        return true;
    }
    complain(place, tagColumnName(TagColumn::Name),
             QString::fromLatin1("'%1' is the name of line %2 already; expected another one, for "
                                 "example %1_2")
                 .arg(quotable(name))
                 .arg(*before));
    return false;
}

bool TagFile::readRow(int record, const TagReading &reading)
{
    const CsvFields fields = m_csv.fields(record);
    const int count = countWithText(fields);
    if (count == 0) {
        return true;
    }
    bool good = true;
    if (count > m_columns) {
        complain(fields.at(m_columns), QString(),
                 QString::fromLatin1("%1, and the header has %2; a text with a divider in it is "
                                     "written in quotes, for example \"a%3b\"")
                     .arg(counted(count, "field"), counted(m_columns, "column"),
                          QString(QLatin1Char(divider()))));
        good = false;
    }
    TagRow row(fields, m_places, reading, m_mistakes, m_warnings);
    const auto tag = row.read();
    const QString name = row.name();
    const int place = m_places.at(static_cast<int>(TagColumn::Name));
    good = (name.isEmpty() || isFirstOf(name, fields.at(place))) && good;
    if (tag && good) {
        m_tags.append(*tag);
        m_records.append(record);
    }
    if (m_tags.size() > kMostTags) {
        complain(fields.at(0), QString(),
                 QString::fromLatin1("more tags than the %1 that a file may have; divide it")
                     .arg(kMostTags));
    }
    return m_tags.size() <= kMostTags;
}

void TagFile::finish(const TagReading &reading)
{
    if (m_mistakes.isEmpty() && m_tags.isEmpty()) {
        m_mistakes.add({m_csv.records().last().line, 1, QString(),
                        QString::fromLatin1("no tags; expected a line that names the columns, %1, "
                                            "and a line for each tag")
                            .arg(QLatin1String(kExample))});
    }
    Findings across(reading.limit);
    warnOfTags(
        m_tags, [this](int tag, TagColumn column) { return placeOf(tag, column); }, across);
    m_warnings.add(across);
    m_warnings.sort();
    m_mistakes.sort();
}

Finding TagFile::placeOf(int tag, TagColumn column) const
{
    const CsvFields fields = m_csv.fields(m_records.at(tag));
    const CsvField &field = fields.at(m_places.at(static_cast<int>(column)));
    return {field.line, field.column, tagColumnName(column), QString()};
}

} // namespace cnet
