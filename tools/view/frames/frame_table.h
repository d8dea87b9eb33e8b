#pragma once

#include "view/frames/trace/frame_filter.h"

#include <QTableView>

namespace cnet::view {

/**
 * The view of a trace. It follows the end until somebody scrolls up, and again once they are back
 * there; scrolled up, it stays with the rows it shows while older ones go.
 */
class FrameTable : public QTableView
{
    Q_OBJECT

public:
    /** @param filter must outlive the view */
    explicit FrameTable(FrameFilter &filter, QWidget *parent = nullptr);

    bool follows() const { return m_follows; }
    /** Goes to the end where it is to follow. */
    void setFollows(bool follows);

    /** The number of the row that is current; -1: none */
    qint64 currentNumber() const;

    /** Makes a row current, if it is to be seen. @return false where it is not */
    bool goTo(qint64 number);

    /** The selected rows, one a line, with tabs between the columns. */
    QString selectedText() const;

    /** Widths of the columns in the order of FrameModel::Column, in widths of a digit. */
    QVector<double> widths() const;
    /** @param widths as many as there are columns, each more than 0; others are left as they are */
    void setWidths(const QVector<double> &widths);

Q_SIGNALS:
    void followsChanged(bool follows);
    /** currentNumber() is another one. */
    void currentMoved();
    void widthsChanged();

protected:
    void rowsAboutToBeRemoved(const QModelIndex &parent, int start, int end) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void fitRows();
    void keepPlace(int first, int last);
    void goToKept();
    void noteScrolled(int value);
    void noteWidth(int column, int before, int now);
    double digit() const;

    FrameFilter &m_filter;
    qint64 m_kept = -1; ///< number of the row that was current before others are seen
    bool m_follows = true;
    bool m_ownChange = false; ///< the scroll bar or a width is moved by this object
};

} // namespace cnet::view
