#pragma once

#include "host/tagfile/tag_columns.h"
#include "host/tagfile/tag_reading.h"
#include "host/text/csv_file.h"
#include "host/text/finding.h"

#include <QByteArray>
#include <QHash>
#include <QVector>

namespace cnet {

/**
 * A file of tags: CSV whose header names the columns, in any order, then a row for each tag. Empty
 * rows, comments, and columns whose heading is empty or begins with # are left alone.
 */
class TagFile
{
public:
    /** Most tags that a file may have. */
    static constexpr int kMostTags = 100000;

    /** Reads a file, and finds all that is wrong with it. @param content whatever it holds */
    static TagFile parse(const QByteArray &content, const TagReading &reading);

    /** True where the file may be used: there are tags, and no mistake. */
    bool isGood() const { return m_mistakes.isEmpty(); }

    /** Those without a mistake, in the order of the file. */
    const QVector<Tag> &tags() const { return m_tags; }

    const Findings &mistakes() const { return m_mistakes; }
    /** What is allowed and seldom meant. */
    const Findings &warnings() const { return m_warnings; }

    /** A comma, a semicolon or a tab. */
    char divider() const { return m_csv.dialect().divider; }
    bool hasByteOrderMark() const { return m_csv.hasByteOrderMark(); }

    /**
     * The file with other tags, found again by their names. Only fields that say something else
     * now are changed; rows of tags that are not among them go, new ones come at the end, and
     * columns that are needed are put behind the others.
     *
     * @param tags whose names differ
     */
    QByteArray updated(const QVector<Tag> &tags) const;

    /** A new file, with the columns that it takes. @param divider a comma, a semicolon or a tab */
    static QByteArray written(const QVector<Tag> &tags, char divider = ',');

private:
    explicit TagFile(const TagReading &reading);

    bool readHeader(int record);
    bool readRow(int record, const TagReading &reading);
    bool isFirstOf(const QString &name, const CsvField &place);
    void finish(const TagReading &reading);
    Finding placeOf(int tag, TagColumn column) const;
    void complain(const CsvField &place, const QString &column, const QString &text);

    int m_station; ///< of rows that name none
    CsvFile m_csv;
    int m_header = -1;     ///< record of it; negative: none found
    int m_columns = 0;     ///< of the header; empty ones at the end do not count
    QVector<int> m_places; ///< of each column's field; negative: there is none
    QVector<Tag> m_tags;
    QVector<int> m_records;      ///< of the tags
    QHash<QString, int> m_lines; ///< by name, also of rows with mistakes
    Findings m_mistakes;
    Findings m_warnings;
};

} // namespace cnet
