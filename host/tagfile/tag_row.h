#pragma once

#include "host/tagfile/tag_columns.h"
#include "host/tagfile/tag_reading.h"
#include "host/text/csv_field.h"
#include "host/text/finding.h"

#include <QVector>

#include <optional>

namespace cnet {

/** A row of a tag file on its way to be a tag. */
class TagRow
{
public:
    /**
     * @param places index of each column's field; negative: there is no such column
     * @param mistakes,warnings receive what is found; all must outlive this object
     */
    TagRow(const CsvFields &fields, const QVector<int> &places, const TagReading &reading,
           Findings &mistakes, Findings &warnings);

    /** Reads all fields. @return nothing where there is a mistake */
    std::optional<Tag> read();

    /** The name, even of a row with mistakes; empty where it has none. */
    QString name() const { return text(TagColumn::Name); }

private:
    const CsvField &field(TagColumn column) const;
    QString text(TagColumn column) const;
    void complain(TagColumn column, const QString &what);
    void warn(TagColumn column, const QString &what);
    void readWriting();
    void readName();
    void readPlace();
    void readType();
    void readCount();
    void readNumbers();
    void readBounds();
    void readAccess();
    void readTexts();
    void readWords();
    bool isNumeric() const;
    QString typeTitle() const;
    std::optional<double> number(TagColumn column, const char *example);
    std::optional<int> wholeNumber(TagColumn column, int low, qint64 high) const;

    const CsvFields &m_fields;
    const QVector<int> &m_places;
    const TagReading &m_reading;
    Findings &m_mistakes;
    Findings &m_warnings;
    Tag m_tag;
    bool m_good = true;
    bool m_hasRegister = false;
    bool m_hasAddress = false;
    bool m_hasType = true;
};

} // namespace cnet
