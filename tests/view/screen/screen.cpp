#include "view/screen/screen.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QtTest>

namespace {

constexpr int kPatienceMs = 60000;
constexpr const char *kDisplay = "DISPLAY";

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

} // namespace

bool Screen::isInstalled(QStringList &missing)
{
    for (const QString &program : words("Xvfb openbox xdotool xprop setpriv")) {
        if (QStandardPaths::findExecutable(program).isEmpty()) {
            missing.append(program);
        }
    }
    return missing.isEmpty();
}

QString Screen::start()
{
    // It goes with the test, however that ends, and all windows go with it.
    const QStringList server = words("--pdeathsig KILL Xvfb -displayfd 1 -noreset -nolisten tcp -r "
                                     "-screen 0 1280x1024x24");
    if (!m_server.start(QLatin1String("setpriv"), server)) {
        return QLatin1String("Xvfb did not start");
    }
    const QByteArray number = m_server.waitForLine([](const QByteArray &) { return true; });
    if (number.isEmpty()) {
        return QLatin1String("Xvfb: ") + QString::fromLocal8Bit(m_server.errors());
    }
    m_display = ':' + number.trimmed();
    m_manager.setVariable(kDisplay, m_display.constData());
    if (!m_manager.start(QLatin1String("openbox"), {QLatin1String("--sm-disable")})) {
        return QLatin1String("openbox did not start");
    }
    return QTest::qWaitFor([this] { return isManaged(); }, kPatienceMs)
               ? QString()
               : QLatin1String("openbox: ") + QString::fromLocal8Bit(m_manager.errors());
}

bool Screen::run(const char *program, const QStringList &arguments, QByteArray &output)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(kDisplay), QString::fromLatin1(m_display));
    process.setProcessEnvironment(environment);
    process.start(QLatin1String(program), arguments);
    const bool isDone = process.waitForFinished(kPatienceMs);
    output = process.readAllStandardOutput();
    return isDone && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

bool Screen::isManaged()
{
    QByteArray output;
    return run("xprop", words("-root _NET_SUPPORTING_WM_CHECK"), output) &&
           output.contains("window id");
}

bool Screen::press(const QStringList &keys)
{
    QByteArray output;
    return run("xdotool", QStringList{QLatin1String("key")} + keys, output);
}

bool Screen::type(const QString &text)
{
    QByteArray output;
    return run("xdotool", {QLatin1String("type"), QLatin1String("--"), text}, output);
}

// Where keys go. The window that the manager calls active gets them only if it was on the screen
// already when it was given the keyboard.
QString Screen::activeTitle()
{
    QByteArray output;
    return run("xdotool", words("getwindowfocus getwindowname"), output)
               ? QString::fromUtf8(output).trimmed()
               : QString();
}

QByteArray Screen::windowOf(qint64 process, const QString &titleEnd)
{
    QByteArray output;
    run("xdotool",
        words("search --onlyvisible --all --pid") + QStringList{QString::number(process),
                                                                QLatin1String("--name"),
                                                                titleEnd + QLatin1Char('$')},
        output);
    return output.split('\n').first();
}

bool Screen::activate(qint64 process, const QString &titleEnd)
{
    if (activeTitle().endsWith(titleEnd)) {
        return true;
    }
    const QByteArray window = windowOf(process, titleEnd);
    if (window.isEmpty()) {
        return false;
    }
    QByteArray output;
    for (const char *command : {"windowactivate", "windowfocus"}) {
        run("xdotool", {QLatin1String(command), QString::fromLatin1(window)}, output);
    }
    return activeTitle().endsWith(titleEnd);
}

QString Screen::titleOf(qint64 process, const QString &titleEnd)
{
    const QByteArray window = windowOf(process, titleEnd);
    QByteArray output;
    return !window.isEmpty() &&
                   run("xdotool", {QLatin1String("getwindowname"), QString::fromLatin1(window)},
                       output)
               ? QString::fromUtf8(output).trimmed()
               : QString();
}
