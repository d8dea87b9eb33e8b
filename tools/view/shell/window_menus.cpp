#include "view/shell/main_window.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>

namespace cnet::view {

void MainWindow::addMenus()
{
    addFileMenu();
    addViewMenu();
    addHelpMenu();
}

void MainWindow::addFileMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&File"));
    menu->addAction(tr("&New window"), this, &MainWindow::anotherWanted, QKeySequence::New);
    menu->addAction(tr("&Open..."), this, &MainWindow::open, QKeySequence::Open);
    m_recentMenu = menu->addMenu(tr("Open &recent"));
    connect(m_recentMenu, &QMenu::aboutToShow, this, &MainWindow::fillRecent);
    menu->addSeparator();
    menu->addAction(tr("&Save"), this, &MainWindow::save, QKeySequence::Save);
    menu->addAction(tr("Save &as..."), this, &MainWindow::saveAs);
    menu->addSeparator();
    menu->addAction(tr("&Close window"), this, &QWidget::close, QKeySequence(tr("Ctrl+W")));
    menu->addAction(tr("&Quit"), qApp, &QApplication::closeAllWindows, QKeySequence(tr("Ctrl+Q")));
}

void MainWindow::fillRecent()
{
    m_recentMenu->clear();
    const QStringList paths = m_recent.projects();
    for (const QString &path : paths) {
        m_recentMenu
            ->addAction(QFileInfo(path).fileName(), this,
                        [this, path] {
                            askFirst(tr("Dis&card and open another"),
                                     [this, path] { openFile(path); });
                        })
            ->setToolTip(path);
    }
    if (paths.isEmpty()) {
        m_recentMenu->addAction(tr("No projects yet"))->setEnabled(false);
    }
}

void MainWindow::addViewMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&View"));
    const auto pages = m_pages->all();
    for (int i = 0; i < pages.size(); ++i) {
        Page *page = pages.at(i);
        menu->addAction(
            page->title(), this,
            [this, page] {
                m_pages->setCurrentWidget(page);
                if (page->focusProxy() != nullptr) {
                    page->setFocus(Qt::ShortcutFocusReason); // its keys work at once
                }
            },
            QKeySequence(QString::fromLatin1("Ctrl+%1").arg(i + 1)));
    }
    menu->addSeparator();
    QAction *whole = menu->addAction(tr("F&ull screen"));
    whole->setShortcut(QKeySequence(Qt::Key_F11));
    whole->setCheckable(true);
    connect(whole, &QAction::toggled, this,
            [this](bool on) { on ? showFullScreen() : showNormal(); });
}

void MainWindow::addHelpMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&Help"));
    menu->addAction(tr("&Simulated press line"), this, [this] {
        askFirst(tr("Dis&card and show the press line"), [this] { openDemo(); });
    });
    menu->addAction(tr("&About"), this, [this] {
        m_bar->ask(tr("cnet-view %1").arg(QApplication::applicationVersion()) + QLatin1Char('\n') +
                       tr("A window on PLCs of the MASTER-K family over their Cnet link."),
                   {});
    });
}

} // namespace cnet::view
