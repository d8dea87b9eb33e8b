#pragma once

#include "host/address/item.h"
#include "host/text/csv_file.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>
#include <optional>

namespace cnet {

/** What a recipe file is read for. */
enum class RecipeUse {
    Write, ///< every item has its values
    Read,  ///< values may be missing; they are to be filled in
};

/** A line of a recipe file: a row of words. */
struct RecipeItem
{
    Item item;
    QVector<quint16> values; ///< as many as the item counts, or none
    int line = 0;            ///< in the file, from 1
};

/**
 * A recipe: CSV whose header names the columns, then a line for each row of words. Columns are
 * `register`, `address`, `count`, `station` and, behind all others, `value`, with one field for
 * each value. `station` and `count` may be missing. Empty lines and lines that begin with # are
 * left alone.
 */
class RecipeFile
{
public:
    /** Tells whether the addresses of an item are good; if not, why. */
    using AddressCheck = std::function<bool(const Item &item, QString &error)>;

    /**
     * Reads a file. Every mistake in it is found before anything is transferred, and so is that it
     * has more words than a recipe may have.
     *
     * @param content whatever the file holds
     * @param defaultStation station of lines that name none
     * @param error receives one sentence with the number of the line ("7: ..."), when the result is
     * empty
     */
    static std::optional<RecipeFile> parse(const QByteArray &content, RecipeUse use,
                                           int defaultStation, const RegisterCatalog &registers,
                                           const AddressCheck &check, QString &error);

    /** One item or more, in the order of the file. */
    const QVector<RecipeItem> &items() const { return m_items; }

    /**
     * The file with other values in it. All else stays as it was, and so does a value that is
     * written in another way but says the same.
     *
     * @param values for each item, as many as it counts
     */
    QByteArray filled(const QVector<QVector<quint16>> &values) const;

private:
    enum Column { kStation, kRegister, kAddress, kCount, kValue, kColumns };
    struct Reading;

    bool readRecord(int index, const Reading &reading, QString &error);
    bool readHeader(const CsvRecord &record, RecipeUse use, QString &error);
    bool readItem(const QStringList &fields, const Reading &reading, RecipeItem &item,
                  QString &error);
    static bool readAddresses(const QString &text, const QString &registerName,
                              const Reading &reading, Item &item, QString &error);
    static bool readValues(const QStringList &values, RecipeItem &item, QString &error);
    bool findOverlap(QString &error) const;

    CsvFile m_csv;
    QVector<RecipeItem> m_items;
    QVector<int> m_records;                             ///< of the items
    QVector<int> m_places = QVector<int>(kColumns, -1); ///< of each column; negative: there is none
    int m_header = -1;                                  ///< its record; negative: not found yet
    int m_columns = 0;                                  ///< of the header
    int m_words = 0;                                    ///< of all items
};

} // namespace cnet
