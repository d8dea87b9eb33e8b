#pragma once

#include "outages/told.h"
#include "sparkplug/wire/packet_cutter.h"

#include <QTcpSocket>

#include <functional>

/**
 * A subscriber whose session the brokers keep: with QoS 1, and what it has not confirmed comes
 * again when it is back, at the same broker or another one of a cluster.
 */
class Listener
{
public:
    Listener();

    /** Connects, or connects anew. @return false when the broker did not take it */
    bool start(quint16 port);

    /** Ends its connection as a power cut does. */
    void stop() { m_socket.abort(); }

    /** What came, oldest first. */
    struct Arrival
    {
        Told told;
        qint64 atMs = 0;      ///< of the change
        qint64 arrivedMs = 0; ///< by the wall clock
    };
    /** Hears each of them, where there is one; then none is kept. */
    std::function<void(const Arrival &)> onArrival;
    const QVector<Arrival> &arrivals() const { return m_arrivals; }
    QVector<Told> all() const;

    /** When the first value came that was read at this time or later, and did not have to wait. */
    qint64 firstLiveSince(qint64 wallMs) const;
    /** When the last of what had to wait came, or 0. */
    qint64 lastOld() const { return m_lastOldMs; }
    /** Messages that came once more. */
    int repeated() const;

private:
    void begin(quint16 port);
    void read();
    void take(const spcheck::RawPacket &packet);

    QTcpSocket m_socket;
    spcheck::PacketCutter m_cutter;
    bool m_isSubscribed = false;
    int m_connection = 0; ///< of the gateway
    QVector<Arrival> m_arrivals;
    qint64 m_lastOldMs = 0;
};
