#pragma once

#include "view/recipes/sheet/recipe_mistakes.h"

#include <QStringList>

#include <optional>

namespace cnet::view {

/** One word of a recipe as its file has it. */
struct SheetRow
{
    int item = 0;                 ///< index of its item in the file
    int word = 0;                 ///< of the item, from 0
    QString address;              ///< "1/D_W:203"
    QString note;                 ///< what a comment above it calls it; empty: nothing
    QString written;              ///< in the file; empty: it has no value
    std::optional<quint16> value; ///< that this stands for
};

/** A recipe file, word by word, and what it becomes with other values. */
class RecipeSheet
{
public:
    /** Reads a file; see readRecipe(). */
    static std::optional<RecipeSheet> read(const QByteArray &content, const RecipeReading &reading,
                                           QVector<Finding> &mistakes);

    /** In the order of the file. */
    const QVector<SheetRow> &rows() const { return m_rows; }
    /** The items of the file, with the values that it has. */
    const QVector<RecipeItem> &items() const { return m_file.items(); }
    /** What the file holds, byte for byte. */
    const QByteArray &content() const { return m_content; }
    /** Of lines that name none. */
    int station() const { return m_station; }

    /**
     * The items with these values.
     * @param values as many as rows
     */
    QVector<RecipeItem> itemsWith(const QVector<std::optional<quint16>> &values) const;

    /**
     * The file with these values; all else stays as it was. Values of an item of which some are
     * missing are left as they were.
     * @param values as many as rows
     */
    QByteArray contentWith(const QVector<std::optional<quint16>> &values) const;

    /**
     * The first row of an item of which some values are there and others are not: no file can have
     * it so. Negative: there is none.
     * @param values as many as rows
     */
    int firstHalfFilled(const QVector<std::optional<quint16>> &values) const;

private:
    explicit RecipeSheet(const RecipeFile &file)
        : m_file(file)
    {}

    RecipeFile m_file;
    QByteArray m_content;
    int m_station = 1;
    QVector<SheetRow> m_rows;
};

} // namespace cnet::view
