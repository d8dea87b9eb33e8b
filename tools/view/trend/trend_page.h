#pragma once

#include "view/look/page.h"
#include "view/tags/watched_tags.h"
#include "view/trend/cursor_table.h"
#include "view/trend/output/trend_record.h"
#include "view/trend/plot/trend_plot.h"
#include "view/trend/traces/collector.h"

#include <QTimer>

class QLabel;
class QMenu;
class QSpinBox;
class QSplitter;
class QStackedWidget;
class QToolBar;

namespace cnet::view {

class SidePanel;
class TrendActions;

/** Tags as lines over the time, as they come. */
class TrendPage : public Page
{
    Q_OBJECT

public:
    /** @param tags must outlive this */
    explicit TrendPage(WatchedTags &tags, QWidget *parent = nullptr);
    ~TrendPage() override;

    QString title() const override { return tr("&Trend"); }
    QJsonObject saved() const override;
    void restore(const QJsonObject &object) override;

    TraceSet &traces() { return m_traces; }
    TrendView &view() { return m_view; }
    Cursors &cursors() { return m_cursors; }
    Markers &markers() { return m_markers; }
    TrendPlot &plot() { return *m_plot; }
    CursorTable &cursorTable() { return m_cursorTable; }
    const TrendActions &actions() const { return *m_actions; }

    /** Writes what is between the cursors, or what is seen. troubled() tells where that fails.
     * @return false: nothing was written */
    bool exportCsv(const QString &path);

    /** Writes the panes: as SVG where the name ends so, else as PNG. @return as exportCsv() */
    bool exportImage(const QString &path);

    /** Records samples of all traces from now on. @return as exportCsv() */
    bool startRecording(const QString &path);
    void stopRecording();
    const TrendRecord &record() const { return m_record; }

    /** Of both parts of a recording that begins, in MB. */
    int recordBound() const;
    void setRecordBound(int megabytes);

    void setPaused(bool isPaused);

    /** Draws and works out what is due, as the timer has it done. */
    void refresh();

    /** Draws these tags, too: bits in lanes, the others in the pane that was used last. troubled()
     * tells which cannot be drawn. */
    void addTraces(const QStringList &names);

protected:
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void build();
    QWidget *makeCursorPanel();
    void connectActions();
    void connectFiles();
    void showState();
    void showCursors();
    void addTo(int pane, const QStringList &names);
    bool addOne(int pane, const QString &trace);
    Side sideFor(int pane, const QString &unit) const;
    void placeCursor(Cursor cursor);
    void addNote();
    void editNoteAt(double atMs, double nearMs);
    void goTo(double atMs);
    void recordAll();
    void askPath(const QString &title, const QStringList &filters,
                 bool (TrendPage::*take)(const QString &));
    bool write(const QString &path, const QByteArray &content);
    void tellChanged();

    WatchedTags &m_tags;
    TraceSet m_traces;
    Collector m_collector;
    TrendView m_view;
    Cursors m_cursors;
    Markers m_markers;
    CursorTable m_cursorTable;
    TrendRecord m_record;
    TrendPlot *m_plot;
    SidePanel *m_side;
    TrendActions *m_actions;
    QMenu *m_menu;
    QStackedWidget *m_stack;
    QWidget *m_cursorPanel = nullptr;
    QLabel *m_cursorText = nullptr;
    QSpinBox *m_bound;
    QTimer m_timer;
    int m_ticks = 0;
    bool m_isRestoring = false;
};

} // namespace cnet::view
