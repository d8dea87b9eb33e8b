#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QHostAddress>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>

#include <csignal>

namespace cnet::gateway {

/** A port of this computer that nobody listens on. */
inline quint16 freePort()
{
    QTcpServer server;
    return server.listen(QHostAddress::LocalHost) ? server.serverPort() : quint16(0);
}

/**
 * A mosquitto on a port of its own on 127.0.0.1, in a temporary folder. It can be killed and come
 * back on the same port. It is ended with the object.
 */
class MosquittoBroker
{
public:
    MosquittoBroker() = default;
    ~MosquittoBroker() { kill(); }
    MosquittoBroker(const MosquittoBroker &) = delete;
    MosquittoBroker &operator=(const MosquittoBroker &) = delete;

    /**
     * Starts it, and waits until it takes connections.
     * @param settings lines of its configuration about its one listener, and behind it
     * @return false when it did not start
     */
    bool start(const QByteArray &settings = "allow_anonymous true\n")
    {
        m_settings = settings;
        // Another program may take the port in between.
        for (int i = 0; i < 5; ++i) {
            m_port = freePort();
            if (restart()) {
                return true;
            }
        }
        return false;
    }

    /** Starts it again as it was, on the same port. */
    bool restart()
    {
        kill();
        QFile config(path("mosquitto.conf"));
        if (!config.open(QIODevice::WriteOnly)) {
            return false;
        }
        // The user counts for root only, and keeps the folder readable.
        config.write("user root\nlistener " + QByteArray::number(m_port) + " 127.0.0.1\n" +
                     m_settings);
        config.close();
        m_process.setStandardOutputFile(path("mosquitto.log"));
        m_process.setStandardErrorFile(path("mosquitto.log"));
        m_process.start(QLatin1String("/usr/sbin/mosquitto"),
                        {QLatin1String("-c"), config.fileName()});
        return m_process.waitForStarted() && waitUntilItListens();
    }

    /** The same with other settings. */
    bool restartWith(const QByteArray &settings)
    {
        m_settings = settings;
        return restart();
    }

    /** kill -9: what it holds in memory is gone, and clients see the connection end. */
    void kill()
    {
        resume();
        m_process.kill();
        m_process.waitForFinished();
    }

    /** Ends it in good order. */
    void stop()
    {
        m_process.terminate();
        m_process.waitForFinished();
    }

    /** It keeps its connections and answers nothing, until resume(). */
    void pause() { signal(SIGSTOP); }
    void resume() { signal(SIGCONT); }

    quint16 port() const { return m_port; }
    bool isRunning() const { return m_process.state() == QProcess::Running; }

    /** Of a file in its folder: for certificates, passwords... */
    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }

    /** What it said since its last start. */
    QByteArray log() const
    {
        QFile file(path("mosquitto.log"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    static constexpr int kPatienceMs = 10000;

    void signal(int number)
    {
        if (m_process.processId() > 0) {
            ::kill(static_cast<pid_t>(m_process.processId()), number);
        }
    }

    bool waitUntilItListens()
    {
        QElapsedTimer clock;
        clock.start();
        while (isRunning() && clock.elapsed() < kPatienceMs) {
            QTcpSocket socket;
            socket.connectToHost(QHostAddress::LocalHost, m_port);
            if (socket.waitForConnected(kPatienceMs)) {
                return true;
            }
            m_process.waitForFinished(5);
        }
        return false;
    }

    QTemporaryDir m_directory;
    QByteArray m_settings;
    quint16 m_port = 0;
    QProcess m_process;
};

} // namespace cnet::gateway
