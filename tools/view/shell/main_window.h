#pragma once

#include "view/look/message_bar.h"
#include "view/project/recent_files.h"
#include "view/shell/project_document.h"
#include "view/shell/window_pages.h"

#include <QMainWindow>

#include <functional>

namespace cnet::view {

/** One window: its pages, its project, the bar for what went wrong and the state of the line. */
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /** @param recent must outlive this object */
    explicit MainWindow(const RecentFiles &recent, QWidget *parent = nullptr);
    ~MainWindow() override;

    WindowPages &pages() { return *m_pages; }
    ProjectDocument &document() { return *m_document; }
    MessageBar &bar() { return *m_bar; }

    /** Takes over a project file, or a tag file: by its ending .csv. */
    void openFile(const QString &path);

    /** Shows the simulated press line, as a new project. */
    void openDemo();

    /** Asks whether work that was left behind is wanted; nothing where there is none. */
    void offerLeftWork();

    /** Takes it over. The window must have no changes. */
    void takeLeftWork();

    /** Asks for a path where the project has none yet. */
    void save();
    void saveAs();
    void open();

    /** Closes it, whatever was not saved. */
    void closeNow();

Q_SIGNALS:
    void anotherWanted();
    /** Work that was left behind is wanted, and this window has changes of its own. */
    void leftWorkWanted();

protected:
    /** With unsaved work it asks, in the bar, and stays. */
    void closeEvent(QCloseEvent *event) override;

private:
    void addMenus();
    void addFileMenu();
    void addViewMenu();
    void addHelpMenu();
    void fillRecent();
    void showTitle();
    void chooseFile();
    void saveTo(const QString &path);
    void askFirst(const QString &without, const std::function<void()> &action);
    void handleConnecting(const Connection &connection);

    const RecentFiles &m_recent;
    WindowPages *m_pages;
    MessageBar *m_bar;
    ProjectDocument *m_document;
    QMenu *m_recentMenu = nullptr;
    bool m_isAbandoned = false; ///< what was not saved is not wanted
};

} // namespace cnet::view
