#pragma once

#include "host/link/link.h"

#include <plc/stations/line.h>

#include <QElapsedTimer>
#include <QTimer>

#include <deque>
#include <memory>

namespace cnet {

/**
 * A simulated PLC inside the program, so that everything can be tried without a device. Its answers
 * take the time of a serial line, and many of its values change: low data registers, current values
 * and contacts of low timers and counters, and low auxiliary and I/O relays.
 */
class LinkSim : public Link
{
    Q_OBJECT

public:
    /**
     * @param stations stations on the line
     * @param baud speed of the line; 0: as fast as it goes
     */
    LinkSim(const QVector<int> &stations, int baud, QObject *parent = nullptr);

    /**
     * A capture instead of a PLC.
     * @param name of the capture, for people
     */
    LinkSim(std::shared_ptr<const plc::Replay> replay, const QString &name,
            QObject *parent = nullptr);

    void open() override;
    void close() override;
    bool isOpen() const override { return m_open; }
    void send(const QByteArray &bytes) override;
    QString name() const override { return m_name; }

    /** Adds those that the line has not yet; the others stay as they are. */
    void addStations(const QVector<int> &stations);

    /** The stations, to set values and faults. */
    plc::Bus &bus() { return m_bus; }

private:
    void deliver();

    LinkSim(const QString &name, QObject *parent);

    plc::Bus m_bus;
    plc::Line m_line;
    std::deque<plc::Chunk> m_underway;
    QTimer m_due;
    QElapsedTimer m_clock;
    bool m_open = false;
    QString m_name;
};

} // namespace cnet
