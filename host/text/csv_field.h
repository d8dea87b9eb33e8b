#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace cnet {

/** What a quote at the beginning of a field means. */
enum class CsvQuotes {
    Understood, ///< the field goes to the closing one, over dividers and lines
    Literal,    ///< nothing
};

/** How fields are divided and quoted. */
struct CsvDialect
{
    char divider = ','; ///< a comma, a semicolon or a tab
    CsvQuotes quotes = CsvQuotes::Understood;
};

/** What is wrong with the writing of a field. */
enum class CsvTrouble {
    None,
    OpenQuote,       ///< no closing quote; it was taken to end with its line
    TextBehindQuote, ///< between the closing quote and the divider
    NotUtf8,         ///< some bytes are no text
};

/** In words, with what to do about it. @param trouble not None */
QString csvTroubleText(CsvTrouble trouble);

/** A field of a record, and where it stands. */
struct CsvField
{
    QString text;   ///< without its quotes, or without the blanks around it
    int line = 0;   ///< from 1
    int column = 0; ///< of its first character, from 1; blanks in front left out
    int begin = 0;  ///< first byte in its record; blanks and quotes included
    int end = 0;    ///< behind its last one
    bool quoted = false;
    CsvTrouble trouble = CsvTrouble::None;
};

/** The fields of a record. At least one. */
struct CsvFields
{
    QVector<CsvField> all;
    CsvField end; ///< an empty one where the record ends

    /** One of them, or the empty one where the record has fewer. @param index from 0 */
    const CsvField &at(int index) const
    {
        return index >= 0 && index < all.size() ? all.at(index) : end;
    }
};

/** The longest field in lines: a quote that is not closed costs no more. */
constexpr int kCsvFieldLines = 50;

/** Where a field that begins at `begin` ends: at a divider, a line feed or the end of the text. */
int endOfCsvField(const QByteArray &text, int begin, const CsvDialect &dialect,
                  CsvTrouble &trouble);

/**
 * Divides a record.
 * @param record without its line end
 * @param line number of its first line, from 1
 */
CsvFields splitCsv(const QByteArray &record, int line, const CsvDialect &dialect);

/** A text as a field: in quotes where it needs them, or where they are wanted. */
QByteArray csvField(const QString &text, const CsvDialect &dialect, bool quoted = false);

/** Fields as a record, without line end. */
QByteArray csvRecord(const QStringList &texts, const CsvDialect &dialect);

} // namespace cnet
