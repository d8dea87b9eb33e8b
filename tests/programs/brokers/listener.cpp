#include "brokers/listener.h"

#include "outages/records.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QSet>
#include <QTest>

#include <algorithm>

using spcheck::RawPacket;

namespace {

const int kPatienceMs = 120000;
const int kAttemptMs = 20000;

qint64 timeOf(const Told &told)
{
    return told.what.mid(told.what.lastIndexOf('|') + 1).toLongLong();
}

} // namespace

Listener::Listener()
{
    QObject::connect(&m_socket, &QTcpSocket::readyRead, &m_socket, [this] { read(); });
}

// A cluster that has lost one of its servers just now may end connections, or answer none.
bool Listener::start(quint16 port)
{
    QElapsedTimer clock;
    clock.start();
    do {
        begin(port);
        (void)QTest::qWaitFor(
            [this] {
                return m_isSubscribed || m_socket.state() == QAbstractSocket::UnconnectedState;
            },
            kAttemptMs);
    } while (!m_isSubscribed && clock.elapsed() < kPatienceMs);
    return m_isSubscribed;
}

void Listener::begin(quint16 port)
{
    m_socket.abort();
    m_cutter = spcheck::PacketCutter();
    m_isSubscribed = false;
    m_socket.connectToHost(QHostAddress::LocalHost, port);
    const QByteArray steady("\0\4MQTT\4\0\0\0\0\x8listener", 20);
    const QByteArray values("\0\1\0\7plant/#\1", 12);
    m_socket.write(RawPacket{RawPacket::Connect, 0, steady}.bytes());
    m_socket.write(RawPacket{RawPacket::Subscribe, 2, values}.bytes());
}

void Listener::read()
{
    for (const RawPacket &packet : m_cutter.feed(m_socket.readAll())) {
        m_isSubscribed = m_isSubscribed || packet.type == RawPacket::Suback;
        if (packet.type == RawPacket::Publish) {
            take(packet);
        }
    }
}

void Listener::take(const RawPacket &packet)
{
    int protocol = 4;
    const auto read = readPacket(packet, spcheck::Packet::From::Broker, protocol);
    if (read->message.topic == "plant/status") {
        m_connection += read->message.payload.contains("online") ? 1 : 0;
    }
    auto told = toldByMessage(read->message.topic, read->message.payload);
    if (told) {
        told->connection = m_connection;
        const Arrival arrival{*told, timeOf(*told), QDateTime::currentMSecsSinceEpoch()};
        m_lastOldMs = told->isOld ? arrival.arrivedMs : m_lastOldMs;
        if (onArrival) {
            onArrival(arrival);
        } else {
            m_arrivals.append(arrival);
        }
    }
    if (read->message.qos > 0) {
        const int id = packet.id();
        const QByteArray number = QByteArray(1, char(id >> 8)) + char(id & 255);
        m_socket.write(RawPacket{RawPacket::Puback, 0, number}.bytes());
    }
}

QVector<Told> Listener::all() const
{
    QVector<Told> all;
    std::transform(m_arrivals.begin(), m_arrivals.end(), std::back_inserter(all),
                   [](const Arrival &arrival) { return arrival.told; });
    return all;
}

qint64 Listener::firstLiveSince(qint64 wallMs) const
{
    const auto isIt = [wallMs](const Arrival &arrival) {
        return !arrival.told.isOld && arrival.atMs >= wallMs;
    };
    const auto it = std::find_if(m_arrivals.begin(), m_arrivals.end(), isIt);
    return it == m_arrivals.end() ? 0 : it->arrivedMs;
}

int Listener::repeated() const
{
    QSet<QByteArray> keys;
    for (const Arrival &arrival : m_arrivals) {
        keys.insert(arrival.told.key());
    }
    return int(m_arrivals.size()) - int(keys.size());
}
