#pragma once

#include "view/trend/traces/trace_set.h"
#include "view/trend/traces/trend_marks.h"

#include <QWidget>

class QAction;
class QTableView;

namespace cnet::view {

/** The list of traces, and that of notes, beside the plot. */
class SidePanel : public QWidget
{
    Q_OBJECT

public:
    /** @param traces, markers must outlive this */
    SidePanel(TraceSet &traces, Markers &markers, QWidget *parent = nullptr);

    /** Has the text of a note typed, in place. */
    void editNote(int row);

    QTableView *traceList() const { return m_traceList; }
    QTableView *noteList() const { return m_noteList; }

Q_SIGNALS:
    /** A note was asked for by its key or a double click on its time. */
    void timeChosen(double atMs);

private:
    QTableView *makeTable(QAbstractItemModel *model, const QString &name);
    QAction *makeAction(QTableView *table, const QString &text, const QKeySequence &key);
    void makeTraceActions();
    void makeNoteActions();
    std::vector<int> chosen(const QTableView *table) const;

    TraceSet &m_traces;
    Markers &m_markers;
    QTableView *m_traceList;
    QTableView *m_noteList;
};

} // namespace cnet::view
