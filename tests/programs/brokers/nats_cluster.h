#pragma once

#include "gateway/support/mosquitto_broker.h"

#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <array>

/** Three nats-servers of this computer that speak MQTT and keep everything three times. */
class NatsCluster
{
public:
    static constexpr int kServers = 3;

    static QString program()
    {
        const QString found = QStandardPaths::findExecutable(QLatin1String("nats-server"));
        return found.isEmpty() ? QStandardPaths::findExecutable(QLatin1String("nats-server"),
                                                                {QLatin1String("/usr/sbin")})
                               : found;
    }

    ~NatsCluster()
    {
        for (Server &server : m_servers) {
            end(server);
        }
    }

    /** Starts them, and waits until they have found each other. */
    bool start()
    {
        for (Server &server : m_servers) {
            server.client = cnet::gateway::freePort();
            server.route = cnet::gateway::freePort();
            server.mqtt = cnet::gateway::freePort();
            server.monitor = cnet::gateway::freePort();
        }
        bool isStarted = true;
        for (int i = 0; i < kServers; ++i) {
            isStarted = isStarted && restart(i);
        }
        return isStarted && waitUntilMember(0) && waitUntilMember(1) && waitUntilMember(2);
    }

    bool restart(int index)
    {
        Server &server = m_servers[std::size_t(index)];
        QFile config(m_folder.filePath(QString::fromLatin1("%1.conf").arg(index)));
        if (!config.open(QIODevice::WriteOnly) || config.write(settings(index)) <= 0) {
            return false;
        }
        config.close();
        server.process.setStandardErrorFile(
            m_folder.filePath(QString::fromLatin1("%1.log").arg(index)), QIODevice::Append);
        server.process.start(program(), {QLatin1String("-c"), config.fileName()});
        return server.process.waitForStarted();
    }

    /** kill -9. */
    void kill(int index) { end(m_servers[std::size_t(index)]); }

    /** Waits until it takes part in what the servers agree on. */
    bool waitUntilMember(int index)
    {
        const quint16 port = m_servers[std::size_t(index)].monitor;
        return QTest::qWaitFor(
            [port] { return ask(port, "/healthz?js-server-only=true").contains(kHealthy); }, 40000);
    }

    /**
     * Waits for 20 s until it has all that the others have; under load the last message is
     * always under way, so that a server that works well may never say so.
     */
    bool waitUntilCaughtUp(int index)
    {
        const quint16 port = m_servers[std::size_t(index)].monitor;
        return QTest::qWaitFor([port] { return ask(port, "/healthz").contains(kHealthy); }, 20000);
    }

    /** @return the server that an MQTT client is connected to, or -1 */
    int serverOf(const QByteArray &clientId) const
    {
        const auto it = std::find_if(m_servers.begin(), m_servers.end(), [&](const Server &server) {
            return ask(server.monitor, "/connz").contains("\"mqtt_client\": \"" + clientId + '"');
        });
        return it == m_servers.end() ? -1 : int(it - m_servers.begin());
    }

    /** What its servers said last, for whoever has to find out why a test failed. */
    QByteArray lastWords() const
    {
        QByteArray words;
        for (int i = 0; i < kServers; ++i) {
            QFile log(m_folder.filePath(QString::fromLatin1("%1.log").arg(i)));
            const bool isOpen = log.open(QIODevice::ReadOnly);
            words += "\nserver " + QByteArray::number(i) + ":\n" +
                     (isOpen ? log.readAll().right(1500) : QByteArray("no log"));
        }
        return words;
    }

    quint16 port(int index) const { return m_servers[std::size_t(index)].mqtt; }

private:
    struct Server
    {
        quint16 client = 0;
        quint16 route = 0;
        quint16 mqtt = 0;
        quint16 monitor = 0;
        QProcess process;
    };

    static void end(Server &server)
    {
        server.process.kill();
        server.process.waitForFinished();
    }

    static constexpr char kHealthy[] = "\"ok\"";

    static QByteArray ask(quint16 monitor, const QByteArray &path)
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, monitor);
        socket.write("GET " + path + " HTTP/1.0\r\n\r\n");
        QByteArray answer;
        while (socket.waitForReadyRead(2000)) {
            answer += socket.readAll();
        }
        return answer;
    }

    // Confirmed is what two of three have; what a subscriber has not confirmed comes again soon.
    QByteArray settings(int index) const
    {
        const auto at = [](quint16 port) { return "127.0.0.1:" + QByteArray::number(port); };
        const Server &own = m_servers[std::size_t(index)];
        QByteArrayList routes;
        for (const Server &server : m_servers) {
            routes.append("nats-route://" + at(server.route));
        }
        return "server_name: centre" + QByteArray::number(index) + "\nlisten: \"" + at(own.client) +
               "\"\nhttp: \"" + at(own.monitor) + "\"\njetstream { store_dir: \"" +
               m_folder.filePath(QString::number(index)).toUtf8() +
               "\", max_file_store: 1GB, max_memory_store: 64MB }\nmqtt { listen: \"" +
               at(own.mqtt) +
               "\", stream_replicas: 3, ack_wait: \"2s\", max_ack_pending: 1000 }\n"
               "cluster { name: centre, listen: \"" +
               at(own.route) + "\", routes: [\"" + routes.join("\", \"") + "\"] }\n";
    }

    QTemporaryDir m_folder;
    std::array<Server, kServers> m_servers;
};
