#pragma once

#include "host/text/csv_field.h"

#include <QByteArray>
#include <QStringList>
#include <QVector>

namespace cnet {

/** What a record of a file is. */
enum class CsvKind {
    Blank,
    Comment, ///< begins with #, maybe within quotes: that is how a spreadsheet keeps one
    Fields,
};

/** A line of a file, or several where a quoted field goes on. */
struct CsvRecord
{
    CsvKind kind = CsvKind::Blank;
    int line = 0;      ///< of its beginning, from 1, as the file was read
    QByteArray text;   ///< without its line end
    int endLength = 0; ///< 2: a carriage return and a line feed; 1: a line feed; 0: none
};

/** Which divider a file is read with. */
enum class CsvDivider {
    Detected, ///< whichever of comma, semicolon and tab the first record has most of
    Comma,
};

/**
 * A CSV file as a spreadsheet or an editor left it. What nobody changes is kept byte for byte:
 * comments, quotes, blanks, line ends, a byte order mark.
 *
 * Debian's libraries for CSV do not fit: libcsv and the fast-cpp-csv-parser of libfccp hand on the
 * values of fields, without their columns and without what it takes to write the same file again.
 */
class CsvFile
{
public:
    CsvFile() = default;

    /** Reads whatever the content is: every file has records, and the fields say what is wrong. */
    static CsvFile read(const QByteArray &content, CsvDivider divider, CsvQuotes quotes);

    /** An empty file. */
    explicit CsvFile(const CsvDialect &dialect)
        : m_dialect(dialect)
    {}

    const QVector<CsvRecord> &records() const { return m_records; }
    const CsvDialect &dialect() const { return m_dialect; }
    bool hasByteOrderMark() const { return m_hasMark; }

    /** @param record index of a record, whatever it is */
    CsvFields fields(int record) const;

    /** The file. */
    QByteArray content() const;

    /**
     * Gives fields that follow each other other texts, in quotes where they were; the blanks around
     * them stay. A record that is too short gets more fields.
     * @param first index, from 0
     * @param texts a null one leaves its field as it is
     */
    void setFields(int record, int first, const QStringList &texts);

    /** Takes a record out. The others keep their indexes. */
    void remove(int record);

    /** Adds a record at the end, with the line end of the others. */
    void append(const QStringList &texts);

    /** The same for a comment. @param text without # */
    void appendComment(const QString &text);

private:
    void appendRaw(CsvKind kind, const QByteArray &text);

    CsvDialect m_dialect;
    bool m_hasMark = false;
    QVector<CsvRecord> m_records;
};

/** "commas", "semicolons" or "tabs". */
QString csvDividerText(char divider);

} // namespace cnet
