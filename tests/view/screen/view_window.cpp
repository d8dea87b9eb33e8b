#include "view/screen/view_window.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QtTest>

namespace {

constexpr int kPatienceMs = 60000;
constexpr int kAgainMs = 10000; // until keys are pressed again
const QLatin1String kTitleEnd(" - cnet-view");

QStringList keys(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

} // namespace

ViewWindow::ViewWindow(Screen &screen, const QString &home, const QString &project)
    : m_screen(screen)
    , m_project(project)
{
    const QByteArray folder = QFile::encodeName(home);
    for (const char *variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME",
                                 "XDG_RUNTIME_DIR", "XDG_STATE_HOME"}) {
        m_program.setVariable(variable, folder.constData());
    }
    m_program.setVariable("DISPLAY", screen.display().constData());
    m_program.setVariable("QT_QPA_PLATFORM", "xcb");
    m_program.setVariable("LC_ALL", "C.UTF-8");
}

bool ViewWindow::start(const QStringList &arguments)
{
    return m_program.start(QLatin1String(CNET_VIEW), arguments + QStringList{m_project}) &&
           QTest::qWaitFor(
               [this] { return !isRunning() || m_screen.activate(m_program.id(), kTitleEnd); },
               kPatienceMs) &&
           isRunning();
}

QString ViewWindow::title()
{
    return m_screen.titleOf(m_program.id(), kTitleEnd);
}

bool ViewWindow::press(const QStringList &keys)
{
    return QTest::qWaitFor(
               [this] { return !isRunning() || m_screen.activate(m_program.id(), kTitleEnd); },
               kPatienceMs) &&
           isRunning() && m_screen.press(keys);
}

bool ViewWindow::choose(const QString &tag)
{
    // Nothing that opens on top is used: keys that come while it closes would go with it. The
    // filter leaves one row, and behind it are the field to add, the menu, the groups and the
    // table.
    return press(keys("ctrl+2 alt+l ctrl+a")) && type(tag) &&
           press(keys("Tab Tab Tab Tab ctrl+Home ctrl+a"));
}

QHash<QString, QString> ViewWindow::row(const QString &tag)
{
    // The copied row is put where the project file has it: into the filter.
    if (!choose(tag) || !press(keys("ctrl+c alt+l ctrl+a ctrl+v"))) {
        return {};
    }
    const QString copied = savedPage("values").value(QLatin1String("filter")).toString().trimmed();
    const QStringList lines = copied.split(QLatin1Char('\n'));
    const QStringList titles = lines.first().split(QLatin1Char('\t'));
    const QStringList fields = lines.last().split(QLatin1Char('\t'));
    QHash<QString, QString> row;
    if (lines.size() == 2 && fields.first() == tag) {
        for (int i = 0; i < qMin(titles.size(), fields.size()); ++i) {
            row.insert(titles.at(i), fields.at(i));
        }
    }
    return row;
}

QJsonObject ViewWindow::saved()
{
    // A file that was not there shows when it is written. It is written as a whole.
    QFile file(m_project);
    file.remove();
    QElapsedTimer clock;
    clock.start();
    bool isSaved = false;
    while (!isSaved && clock.elapsed() < kPatienceMs) {
        // A window that has only just come may miss its first keys.
        if (!press(keys("ctrl+s"))) {
            return {};
        }
        isSaved = QTest::qWaitFor([&file] { return file.exists(); }, kAgainMs);
    }
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

QJsonObject ViewWindow::savedPage(const char *page)
{
    return saved().value(QLatin1String("pages")).toObject().value(QLatin1String(page)).toObject();
}
