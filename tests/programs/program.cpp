#include "program.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QProcessEnvironment>

#include <unistd.h>

#include <csignal>

namespace {

// A sanitized program on a busy machine takes its time; a test that passes never waits as long.
const int kPatienceMs = 30000;

} // namespace

Program::~Program()
{
    if (isRunning()) {
        m_process.kill();
        m_process.waitForFinished(kPatienceMs);
    }
}

bool Program::start(const QString &file, const QStringList &arguments)
{
    m_process.start(file, arguments);
    return m_process.waitForStarted(kPatienceMs);
}

// The shell puts bytes into a command line that are no text in any encoding, since those of
// QProcess are text. It is replaced by the program.
bool Program::startBytes(const QByteArray &file, const QList<QByteArray> &arguments)
{
    const auto quoted = [](QByteArray text) { return " '" + text.replace("'", "'\\''") + '\''; };
    QByteArray script = "exec" + quoted(file);
    for (const QByteArray &argument : arguments) {
        script += quoted(argument);
    }
    if (!m_place.isEmpty()) {
        script += " >" + m_place;
    }
    m_process.start(QLatin1String("/bin/sh"), QStringList());
    if (!m_process.waitForStarted(kPatienceMs)) {
        return false;
    }
    m_process.write(script + '\n');
    const bool written = m_process.waitForBytesWritten(kPatienceMs);
    m_process.closeWriteChannel();
    return written;
}

void Program::setVariable(const char *name, const char *value)
{
    QProcessEnvironment environment = m_process.processEnvironment();
    if (environment.isEmpty()) {
        environment = QProcessEnvironment::systemEnvironment();
    }
    environment.insert(QLatin1String(name), QLatin1String(value));
    m_process.setProcessEnvironment(environment);
}

qint64 Program::memory() const
{
    QFile file(QString::fromLatin1("/proc/%1/statm").arg(id()));
    const QByteArray pages =
        file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1) : QByteArray();
    return pages.toLongLong() * sysconf(_SC_PAGESIZE);
}

QList<QByteArray> Program::lines()
{
    m_output += m_process.readAllStandardOutput();
    QList<QByteArray> lines = m_output.split('\n');
    lines.removeLast();
    return lines;
}

QByteArray Program::errors()
{
    m_errors += m_process.readAllStandardError();
    return m_errors;
}

QByteArray Program::waitForLine(const std::function<bool(const QByteArray &)> &likes)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kPatienceMs) {
        for (const QByteArray &line : lines()) {
            if (likes(line)) {
                return line;
            }
        }
        if (!isRunning()) {
            break;
        }
        m_process.waitForReadyRead(kPatienceMs - static_cast<int>(clock.elapsed()));
    }
    return {};
}

void Program::type(const QByteArray &bytes)
{
    m_process.write(bytes);
    m_process.waitForBytesWritten(kPatienceMs);
}

int Program::exitCode()
{
    if (isRunning() && !m_process.waitForFinished(kPatienceMs)) {
        return -1;
    }
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

void Program::signal(int number)
{
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

bool PlcProgram::serve(const QStringList &place, const QStringList &arguments)
{
    if (!start(QLatin1String(CNET_PLC), place + arguments)) {
        return false;
    }
    const QByteArray line = waitForLine([](const QByteArray &) { return true; });
    m_place = QString::fromLocal8Bit(line.mid(line.lastIndexOf(' ') + 1));
    return !m_place.isEmpty();
}

QList<QJsonObject> jsonLines(const QList<QByteArray> &lines)
{
    QList<QJsonObject> objects;
    for (const QByteArray &line : lines) {
        objects.append(QJsonDocument::fromJson(line).object());
    }
    return objects;
}
