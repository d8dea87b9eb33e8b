#pragma once

#include "view/frames/trace/frame_model.h"

#include <QSortFilterProxyModel>

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

/** Leaves out what is not asked for. A request and its answer are seen together, or neither is. */
class FrameFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    /** In place of setSourceModel(). @param model null: none; must outlive its place here */
    void setFrames(FrameModel *model);
    FrameModel *frames() const { return m_frames; }

    void setQuery(const FrameQuery &query);
    const FrameQuery &query() const { return m_query; }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    bool hasText(const FrameRow &row, qint64 number) const;

    FrameModel *m_frames = nullptr;
    FrameQuery m_query;
    QByteArray m_characters; ///< of the query's text
    QByteArray m_hex;        ///< the bytes that it writes; empty: it is no such text
};

} // namespace cnet::view
