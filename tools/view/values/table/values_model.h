#pragma once

#include "view/tags/watched_tags.h"
#include "view/values/table/value_row.h"

#include <QAbstractTableModel>
#include <QElapsedTimer>
#include <QFont>
#include <QIcon>
#include <QPalette>
#include <QTimer>

namespace cnet::view {

/** In the order in which a new table has them. */
enum class ValueColumn {
    Name,
    Value,
    Quality,
    Write,
    Raw,
    Changed,
    Age,
    Min,
    Max,
    Description,
};

constexpr int kValueColumns = 10;

/** What a project calls a column: "value". */
QLatin1String valueColumnId(ValueColumn column);

/**
 * One row for each value of the tags that are watched. Changes are told of some times a second, and
 * only those of rows that are different then; no extreme is lost between.
 */
class ValuesModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role {
        RowRole = Qt::UserRole + 1, ///< int: the row in this model, also through a proxy
        FreshRole,                  ///< double: 1 just changed, falling to 0
    };

    /** How long a change is seen, in milliseconds. */
    static constexpr int kFadeMs = 1500;

    /** @param tags must outlive this object */
    explicit ValuesModel(WatchedTags &tags, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /** Begins to write a text to the PLC. @return false: the value cannot be written at all */
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;

    /** @param row 0 to rowCount() - 1 */
    const ValueRow &row(int row) const { return m_rows.at(row); }
    /** The value of a row as a tag. @param row 0 to rowCount() - 1 */
    Tag tagOf(int row) const;
    /** The tag that a row is of. @param row 0 to rowCount() - 1 */
    const Tag &wholeTagOf(int row) const { return m_tags.tags().all().at(m_rows.at(row).tag); }
    /** First row of a tag. @param tag index @return -1: there is no such tag */
    int firstRowOf(int tag) const { return m_firstRows.value(tag, -1); }

    /** See ItemState::readAtMs. @param row 0 to rowCount() - 1 */
    qint64 readAtMs(int row) const { return m_tags.state(m_rows.at(row).tag).readAtMs; }

    const ValueWriter &writer() const { return m_writer; }

    /** Counts least and greatest from what is known now. */
    void resetExtremes();

    /** True while a row is not wholly faded. */
    bool isAnyFresh() const;

    /** True while there are changes that nobody was told of yet. */
    bool isTelling() const { return m_telling.isActive(); }

    /** What signs and colours are drawn for. */
    void setPalette(const QPalette &palette);

Q_SIGNALS:
    /** A value has changed; isAnyFresh() for a while. */
    void freshened();

private:
    void rebuild();
    void takeIn(int tag);
    void markChanged(int row);
    void tellChanges();
    void tellRows(int first, int last);
    void takeNote(const QString &key, const WriteNote &note);
    void forgetOtherPlc();
    bool isRow(const QModelIndex &index) const;
    QString text(const ValueRow &row, ValueColumn column) const;
    QString toolTip(const ValueRow &row, ValueColumn column) const;
    QVariant decoration(const ValueRow &row, ValueColumn column) const;
    QVariant foreground(const ValueRow &row, ValueColumn column) const;
    qint64 ageMs(const ValueRow &row) const;
    double freshness(const ValueRow &row) const;

    WatchedTags &m_tags;
    ValueWriter m_writer;
    QVector<ValueRow> m_rows;
    QVector<int> m_firstRows; ///< of each tag
    QHash<QString, int> m_rowsByKey;
    QVector<int> m_changed;          ///< rows that are to be told of
    std::optional<Connection> m_plc; ///< whose changes, extremes and writes the rows have
    const QFont m_fixed;             ///< of raw words; to ask for it for each cell takes long
    QTimer m_telling;
    QElapsedTimer m_clock;
    qint64 m_freshAtMs = -kFadeMs; ///< of the youngest change
    QPalette m_palette;
    mutable QHash<int, QIcon> m_icons; ///< by tone
};

} // namespace cnet::view
