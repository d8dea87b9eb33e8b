#include "view/shell/main_window.h"

#include "view/shell/state_label.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontMetrics>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QVBoxLayout>

namespace cnet::view {

namespace {

constexpr int kToldMs = 8000;        // a word about what was done
constexpr int kCharactersWide = 210; // all columns of the values
constexpr int kLinesHigh = 50;
constexpr double kPartOfScreen = 0.95; // at most, so that the frame has room

} // namespace

MainWindow::MainWindow(const RecentFiles &recent, QWidget *parent)
    : QMainWindow(parent)
    , m_recent(recent)
    , m_pages(new WindowPages)
    , m_bar(new MessageBar)
    , m_document(new ProjectDocument(*m_pages, this))
{
    auto *all = new QWidget;
    auto *column = new QVBoxLayout(all);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_bar);
    column->addWidget(m_pages, 1);
    setCentralWidget(all);
    auto *state = new StateLabel(m_pages->line());
    statusBar()->addPermanentWidget(state);
    connect(state, &QToolButton::clicked, this, [this] {
        m_pages->setCurrentWidget(&m_pages->connectPage());
        m_pages->connectPage().setFocus();
    });
    connect(m_pages, &WindowPages::troubled, m_bar, &MessageBar::tell);
    connect(m_pages, &WindowPages::told, this,
            [this](const QString &text) { statusBar()->showMessage(text, kToldMs); });
    connect(m_document, &ProjectDocument::troubled, m_bar, &MessageBar::tell);
    connect(m_document, &ProjectDocument::stateChanged, this, &MainWindow::showTitle);
    connect(&m_pages->connectPage(), &ConnectPage::connecting, this, &MainWindow::handleConnecting);
    m_pages->connectPage().setRecent(m_recent.connections());
    addMenus();
    showTitle();
    const QFontMetrics metrics = fontMetrics();
    const QSize wanted(metrics.averageCharWidth() * kCharactersWide,
                       metrics.lineSpacing() * kLinesHigh);
    const QScreen *screen = QGuiApplication::primaryScreen();
    resize(screen != nullptr ? wanted.boundedTo(screen->availableSize() * kPartOfScreen) : wanted);
    if (!m_pages->driverError().isEmpty()) {
        m_bar->tell(m_pages->driverError(), tr("Install the driver beside this program."));
    }
}

MainWindow::~MainWindow()
{
    // Pages that end tell of it, and nobody is there any more who could show it.
    m_pages->disconnect(this);
    m_pages->disconnect(m_bar);
    m_pages->disconnect(m_document);
}

void MainWindow::openFile(const QString &path)
{
    m_bar->clear();
    if (QFileInfo(path).suffix().compare(QLatin1String("csv"), Qt::CaseInsensitive) == 0) {
        m_pages->values().openFile(path);
        m_pages->setCurrentWidget(&m_pages->values());
        return;
    }
    const QString error = m_document->open(path);
    if (error.isEmpty()) {
        m_recent.addProject(path);
    } else {
        m_bar->tell(error, tr("What the window shows is as it was."));
    }
}

void MainWindow::openDemo()
{
    m_document->startNew();
    m_pages->openDemo();
}

// Whatever takes the place of the project.
void MainWindow::askFirst(const QString &without, const std::function<void()> &action)
{
    if (!m_document->isChanged()) {
        action();
        return;
    }
    m_bar->ask(tr("%1 has changes that are not saved.").arg(m_document->title()),
               {{tr("&Save"), [this] { save(); }}, {without, action}});
}

void MainWindow::open()
{
    askFirst(tr("Dis&card and open another"), [this] { chooseFile(); });
}

void MainWindow::chooseFile()
{
    auto *dialog = new QFileDialog(this, tr("Open a project or a tag file"), QString(),
                                   tr("Projects (*.cnet-view);;Tag files (*.csv);;All files (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &MainWindow::openFile);
    dialog->open();
}

void MainWindow::save()
{
    if (m_document->path().isEmpty()) {
        saveAs();
    } else if (m_document->isReplaced()) {
        m_bar->ask(
            tr("%1 was stored by another window or program meanwhile.").arg(m_document->path()),
            {{tr("&Save as..."), [this] { saveAs(); }},
             {tr("Dis&card that and save"), [this] { saveTo(m_document->path()); }}});
    } else {
        saveTo(m_document->path());
    }
}

void MainWindow::saveAs()
{
    auto *dialog =
        new QFileDialog(this, tr("Save the project"), QString(), tr("Projects (*.cnet-view)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QLatin1String("cnet-view"));
    connect(dialog, &QFileDialog::fileSelected, this, &MainWindow::saveTo);
    dialog->open();
}

void MainWindow::saveTo(const QString &path)
{
    const QString error = m_document->save(path);
    if (!error.isEmpty()) {
        m_bar->tell(error, tr("Nothing is lost: save it elsewhere, or make room and try again."));
        return;
    }
    m_recent.addProject(path);
    statusBar()->showMessage(tr("Saved: %1").arg(path), kToldMs);
}

void MainWindow::closeNow()
{
    m_document->abandon();
    m_isAbandoned = true;
    close();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_document->isChanged() || m_isAbandoned) {
        event->accept();
        return;
    }
    event->ignore();
    m_bar->ask(
        tr("%1 has changes that are not saved.").arg(m_document->title()),
        {{tr("&Save"), [this] { save(); }}, {tr("&Close without saving"), [this] { closeNow(); }}});
    m_bar->buttons().first()->setFocus();
}

void MainWindow::showTitle()
{
    setWindowTitle(tr("%1[*] - cnet-view").arg(m_document->title()));
    setWindowModified(m_document->isChanged());
}

void MainWindow::offerLeftWork()
{
    // Without a driver no tag could be read again.
    if (!m_pages->driverError().isEmpty() || m_document->left() == 0) {
        return;
    }
    m_bar->ask(tr("A window ended before its work was saved. The work is still there."),
               {{tr("Pi&ck it up again"), [this] {
                     if (m_document->isChanged()) {
                         Q_EMIT leftWorkWanted();
                     } else {
                         takeLeftWork();
                     }
                 }}});
}

void MainWindow::takeLeftWork()
{
    QString error;
    const bool wasThere = m_document->claimLeft(error);
    if (!error.isEmpty()) {
        m_bar->tell(error);
    } else if (!wasThere) {
        m_bar->tell(tr("Another window has picked that work up."));
    }
}

void MainWindow::handleConnecting(const Connection &connection)
{
    if (connection.kind != Connection::Kind::Simulator) {
        m_recent.addConnection(connection);
        m_pages->connectPage().setRecent(m_recent.connections());
    }
}

} // namespace cnet::view
