#pragma once

#include "view/frames/trace/frame_model.h"

#include <QAbstractProxyModel>
#include <QTimer>

#include <deque>
#include <optional>

namespace cnet::view {

/** What is to be seen of a trace. */
struct FrameQuery
{
    std::optional<int> station; ///< nothing: all
    std::optional<FrameKind> kind;
    bool faultsOnly = false;
    /** In what a frame says, its result or its bytes, whether as characters or in hexadecimal. */
    QString text;

    bool isAll() const { return !station && !kind && !faultsOnly && text.isEmpty(); }
    bool operator==(const FrameQuery &other) const
    {
        return station == other.station && kind == other.kind && faultsOnly == other.faultsOnly &&
               text == other.text;
    }
};

/**
 * Leaves out what is not asked for. A request and its answer are seen together, or neither is.
 *
 * Of many rows it takes a while to find out: they are looked through a few at a time, and until
 * that is done one sees what was seen before.
 */
class FrameFilter : public QAbstractProxyModel
{
    Q_OBJECT

public:
    /** So many rows are looked through at once, whatever that takes. */
    static constexpr int kRowsAtOnce = 256;

    explicit FrameFilter(QObject *parent = nullptr);

    /** In place of setSourceModel(). @param model null: none; must outlive its place here */
    void setFrames(FrameModel *model);
    FrameModel *frames() const { return m_frames; }

    void setQuery(const FrameQuery &query);
    /** The last one; see isSearching(). */
    const FrameQuery &query() const { return m_wanted.query; }

    /** True while rows are looked through; shown() ends it. */
    bool isSearching() const { return m_isSearching; }

    QModelIndex index(int row, int column,
                      const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    QModelIndex mapToSource(const QModelIndex &proxyIndex) const override;
    QModelIndex mapFromSource(const QModelIndex &sourceIndex) const override;

Q_SIGNALS:
    /** What the query asks for is found, and will take the place of what is seen. */
    void aboutToShow();
    /** It has; a table that keeps its place goes back there. */
    void shown();

private:
    /** A query, made ready. */
    struct Search
    {
        FrameQuery query;
        QByteArray characters; ///< of the query's text
        QByteArray hex;        ///< the bytes that it writes; empty: it is no such text
    };
    using Numbers = std::deque<qint64>; ///< of rows, rising

    static Search searchFor(const FrameQuery &query);
    static bool isIn(const Numbers &numbers, qint64 number);
    bool accepts(const Search &search, qint64 number) const;
    bool hasText(const Search &search, const FrameRow &row, qint64 number) const;

    void begin();
    void stop();
    void look();
    void search();
    void finish();
    void takeInserted();
    void takeRemoving(int last);
    void takeRemoved();
    void takeChanged(int first, int last, const QVector<int> &roles);
    void takeChange(qint64 number);
    int placeOf(qint64 number) const;

    FrameModel *m_frames = nullptr;
    Search m_wanted;
    Search m_inForce; ///< what m_shown is by
    Numbers m_shown;
    Numbers m_found;    ///< by m_wanted, before m_next
    qint64 m_next = 0;  ///< number of the row that is looked at next
    qint64 m_known = 0; ///< number behind the last row that m_shown knows of
    int m_going = 0;    ///< rows of m_shown that are on their way out
    bool m_isSearching = false;
    QTimer m_turn;
};

} // namespace cnet::view
