#pragma once

#include "view/recipes/sheet/recipe_sheet.h"
#include "view/recipes/sheet/row_state.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>
#include <QUndoStack>

namespace cnet::view {

/** A value of a row that becomes another one. */
struct RowEdit
{
    int row = 0;
    std::optional<quint16> before;
    std::optional<quint16> after;
};

/** How many rows of a table are how. */
struct RowCounts
{
    int rows = 0;
    int same = 0;      ///< as the PLC has it
    int different = 0; ///< the PLC has another value
    int unknown = 0;   ///< a transfer could not tell what the PLC has
    int missing = 0;   ///< without a value in the file
};

/** The words of a recipe: as its file has them, as they are edited, and as the PLC has them. */
class RecipeModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { kAddress, kNote, kValue, kPlc, kState, kColumns };
    enum Role {
        kDifferentRole = Qt::UserRole, ///< bool: not known to be the same in the PLC
    };

    explicit RecipeModel(QObject *parent = nullptr);

    /** Shows another file. What was undone and what the PLC had is forgotten. */
    void setSheet(const RecipeSheet &sheet);
    /** Shows nothing. */
    void clear();
    /** null: nothing is shown */
    const RecipeSheet *sheet() const { return m_sheet ? &*m_sheet : nullptr; }

    /**
     * The same file read with another station for lines that name none; edits stay.
     * @return false: it has other rows
     */
    bool readdress(const RecipeSheet &sheet);

    /** What people call an address, where the file does not say. @param names by address */
    void setTagNames(const QHash<QString, QString> &names);

    /** Of each row, as edited. */
    QVector<std::optional<quint16>> values() const { return m_values; }

    /** Sets a row of values at once, to be undone at once. Rows that do not exist are left out. */
    void edit(const QVector<RowEdit> &edits, const QString &name);

    /**
     * Sets values that were typed elsewhere.
     * @param rows to be set, one after the other; as many as texts, or more
     * @param error receives one sentence when the result is false, and nothing was set
     */
    bool paste(const QVector<int> &rows, const QStringList &texts, QString &error);

    /** What differs from what the file has. */
    QVector<RowEdit> edits() const;

    /** The values are what the file has. */
    void markSaved();

    /** What is known after a transfer. @param words as many as rows */
    void setWords(const QVector<WordOutcome> &words);
    /** Nothing is known of the PLC. */
    void forgetPlc();
    /** True after setWords(). */
    bool isCompared() const { return !m_words.isEmpty(); }

    /** Values that the PLC has become those of the recipe, to be undone at once. @return how many
     * are others now */
    int takeFromPlc();

    RowCounts counts() const;

    /** While a transfer runs nobody edits. */
    enum class Editing { Allowed, Locked };
    void setEditing(Editing editing) { m_editing = editing; }

    QUndoStack &undo() { return m_undo; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    /** Values have changed, by an edit, or by undoing or redoing one. */
    void edited();

private:
    class EditCommand;

    void put(const QVector<RowEdit> &edits, std::optional<quint16> RowEdit::*value);
    RowState stateOf(int row) const;
    QString text(int row, int column) const;
    QString toolTip(int row, int column) const;
    QIcon icon(Quality like) const;

    std::optional<RecipeSheet> m_sheet;
    QHash<QString, QString> m_tagNames;
    QVector<std::optional<quint16>> m_values;
    QVector<std::optional<quint16>> m_saved; ///< as the file has them
    QVector<WordOutcome> m_words;            ///< of each row; empty: nothing was transferred
    QUndoStack m_undo;
    Editing m_editing = Editing::Allowed;
    mutable QHash<int, QIcon> m_icons; ///< by their quality, for the palette below
    mutable qint64 m_iconsOf = 0;      ///< cache key of a palette
};

} // namespace cnet::view
