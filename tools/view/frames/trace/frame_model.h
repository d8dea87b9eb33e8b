#pragma once

#include "view/frames/trace/frame_log.h"

#include <QAbstractTableModel>
#include <QCache>
#include <QIcon>
#include <QPalette>
#include <QVector>

#include <array>

namespace cnet::view {

/**
 * A trace as a table. What a frame says is found out when somebody wants to see it: taking a row in
 * costs next to nothing.
 */
class FrameModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Time, Way, Station, Kind, Response, Result, Meaning, Bytes, ColumnCount };

    static constexpr int kMostExchanges = 20000;

    /** @param mostExchanges of a running line, 1 or more; when there are more, the oldest go */
    explicit FrameModel(int mostExchanges = kMostExchanges, QObject *parent = nullptr)
        : QAbstractTableModel(parent)
        , m_mostExchanges(mostExchanges)
    {}

    int mostExchanges() const { return m_mostExchanges; }
    /** How many exchanges go at least: moving the rest for each of them would take long. */
    int batch() const;

    /**
     * Takes in what came last, and gives up the oldest where it is too much.
     * @param rows at most mostExchanges(); where their numbers do not follow, they replace the rest
     */
    void add(FrameLog rows);

    /** Shows these instead, however many there are. */
    void show(FrameLog rows);

    const FrameLog &log() const { return m_log; }
    /** @param row 0 to rowCount() - 1 */
    qint64 numberAt(int row) const { return m_log.first() + row; }

    /** For changes; touch() once they are made. null: it is not there */
    FrameRow *edit(qint64 number) { return m_log.find(number); }
    /** Rows became different. @param numbers some may be gone */
    void touch(const QVector<qint64> &numbers);

    /** Makes all rows of an exchange stand out. @param number of its request; -1: none */
    void mark(qint64 number);

    /** What a frame says, in one line. Remembered for the rows that were looked at last. */
    QString meaning(qint64 number) const;

    /** Columns of a row with tabs between them, all bytes included. @param row of the table */
    QString line(int row) const;

    /** Icons and colours are those of a palette. */
    void setLook(const QPalette &palette);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QString text(const FrameRow &row, int column, qint64 number) const;
    QVariant background(const FrameRow &row) const;
    QVariant font(const FrameRow &row) const;
    const QIcon &icon(FrameFaults faults) const;
    QString hint(const FrameRow &row, qint64 number) const;
    void removeOldest(int exchanges);
    void repaint(const QVector<qint64> &numbers);

    // All rows of a full table: who looks for a text types it letter by letter.
    static constexpr int kRemembered = 2 * kMostExchanges;

    FrameLog m_log;
    int m_mostExchanges;
    qint64 m_marked = -1;
    QPalette m_palette;
    mutable std::array<QIcon, 3> m_icons; ///< by tone: bad, waiting, doubtful
    mutable QCache<qint64, QString> m_meanings{kRemembered};
};

} // namespace cnet::view
