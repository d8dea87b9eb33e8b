#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>

/** A program of the project that a test started. It is ended with the object. */
class Program
{
public:
    Program() = default;
    ~Program();
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /** @return false when it did not start */
    bool start(const QString &file, const QStringList &arguments);

    /** The same with arguments that need not be text. They hold no zero byte. */
    bool startBytes(const QByteArray &file, const QList<QByteArray> &arguments);

    /** Sets a variable of the environment of what is started next. */
    void setVariable(const char *name, const char *value);

    /** Where standard output goes instead of lines(): a path, or "&-" for nowhere at all. */
    void setOutput(const char *place) { m_place = place; }

    /** Waits for a line on standard output that the test likes. @return it, or nothing in vain */
    QByteArray waitForLine(const std::function<bool(const QByteArray &line)> &likes);

    /** Types on its standard input. */
    void type(const QByteArray &bytes);
    /** Ends its standard input. */
    void endInput() { m_process.closeWriteChannel(); }

    /** Waits for its end. @return exit code, -1 where it did not end or crashed */
    int exitCode();

    /** Asks it to end, as a user does with Ctrl-C (SIGINT) or a service manager (SIGTERM). */
    void signal(int number);

    qint64 id() const { return m_process.processId(); }
    /** Memory in use, in bytes. */
    qint64 memory() const;

    bool isRunning() const { return m_process.state() == QProcess::Running; }

    /** Complete lines of standard output so far, or all after the end. */
    QList<QByteArray> lines();
    QByteArray errors();

private:
    QProcess m_process;
    QByteArray m_place;
    QByteArray m_output;
    QByteArray m_errors;
};

/** The simulated PLC as a program, at whatever place it found free. */
class PlcProgram : public Program
{
public:
    /**
     * @param place arguments that say where it serves
     * @return false when it did not say where it serves
     */
    bool serve(const QStringList &place, const QStringList &arguments);

    /** "127.0.0.1:40339" or "/tmp/plc". */
    const QString &place() const { return m_place; }

private:
    QString m_place;
};

/** Each line as a JSON object, empty where it is none. */
QList<QJsonObject> jsonLines(const QList<QByteArray> &lines);
