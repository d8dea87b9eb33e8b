#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QProcess>
#include <QStringList>

namespace cnet::gateway {

/** mosquitto_sub: sees what a subscriber beside the gateway sees. It is ended with the object. */
class MosquittoSubscriber
{
public:
    struct Seen
    {
        QString topic;
        QByteArray payload; ///< in one line
        bool isRetained = false;
    };

    MosquittoSubscriber() = default;
    ~MosquittoSubscriber()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    MosquittoSubscriber(const MosquittoSubscriber &) = delete;
    MosquittoSubscriber &operator=(const MosquittoSubscriber &) = delete;

    /** Subscribes on a broker of this computer with QoS 1. @return false when it could not */
    bool start(quint16 port, const QString &filter = QLatin1String("#"))
    {
        // Else it keeps to itself that it has subscribed, until there is a message.
        m_process.start(QLatin1String("stdbuf"),
                        {QLatin1String("-oL"), QLatin1String("mosquitto_sub"), QLatin1String("-h"),
                         QLatin1String("127.0.0.1"), QLatin1String("-p"), QString::number(port),
                         QLatin1String("-t"), filter, QLatin1String("-q"), QLatin1String("1"),
                         QLatin1String("-d"), QLatin1String("-F"), QLatin1String("=%r %t %p")});
        return waitFor([this] { return m_isSubscribed; });
    }

    /** All so far, in order. */
    const QList<Seen> &seen()
    {
        read();
        return m_seen;
    }

    /** The newest of a topic; empty where there was none. */
    Seen newest(const QString &topic)
    {
        read();
        for (int i = int(m_seen.size()) - 1; i >= 0; --i) {
            if (m_seen.at(i).topic == topic) {
                return m_seen.at(i);
            }
        }
        return Seen();
    }

    /** Waits until something holds. @return false in vain */
    template <typename Condition>
    bool waitFor(Condition holds)
    {
        QElapsedTimer clock;
        clock.start();
        read();
        while (!holds() && clock.elapsed() < 10000) {
            m_process.waitForReadyRead(20);
            read();
        }
        return holds();
    }

private:
    void read()
    {
        m_output += m_process.readAllStandardOutput();
        for (auto end = m_output.indexOf('\n'); end >= 0; end = m_output.indexOf('\n')) {
            const QByteArray line = m_output.left(end);
            m_output.remove(0, end + 1);
            const auto blank = line.indexOf(' ', 3);
            if (line.startsWith("Subscribed ")) {
                m_isSubscribed = true;
            } else if (line.startsWith('=')) {
                m_seen.append({QString::fromUtf8(line.mid(3, blank - 3)), line.mid(blank + 1),
                               line.at(1) == '1'});
            }
        }
    }

    QProcess m_process;
    QByteArray m_output;
    QList<Seen> m_seen;
    bool m_isSubscribed = false;
};

} // namespace cnet::gateway
