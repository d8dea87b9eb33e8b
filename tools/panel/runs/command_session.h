#pragma once

#include "host/driver/driver_session.h"
#include "host/exchange/exchange.h"
#include "host/link/link.h"
#include "panel/system/messages.h"
#include "host/link/reconnector.h"
#include "panel/commands/link_settings.h"
#include "host/exchange/station_counters.h"
#include "panel/system/stop_signals.h"

#include <QEventLoop>
#include <QObject>

#include <memory>

namespace cnet::panel {

/**
 * One stay on a line: driver, link and exchange, wired together and reporting to the user. A
 * command queues its job with driver(), follows it with the signals of exchange() and calls
 * finish() when it is done.
 */
class Session : public QObject
{
    Q_OBJECT

public:
    /**
     * @param functions of the loaded driver
     * @param stations that the command will talk to
     * @param messages must outlive the session
     */
    Session(const DriverFunctions &functions, const LinkSettings &settings,
            const QVector<int> &stations, Messages &messages, QObject *parent = nullptr);
    ~Session() override;

    /**
     * Opens the link and runs the event loop until finish().
     * @return the exit code: that of finish(), or kNoLink when the link cannot be opened
     */
    int run();

    /** Ends run(); the first call decides. */
    void finish(int exitCode);

    DriverSession &driver() { return m_driver; }
    Exchange &exchange() { return *m_exchange; }
    const Exchange &exchange() const { return *m_exchange; }
    const StationBook &stations() const { return m_stations; }
    QString linkName() const { return m_link->name(); }
    /** Why the link is down; empty while it is open. */
    const QString &linkLost() const { return m_linkLost; }

Q_SIGNALS:
    /** The user wants the program to end; the command decides with which exit code. */
    void stopRequested();

private:
    void wireLink();
    void wireExchange(bool trace);

    Messages &m_messages;
    DriverSession m_driver;
    std::unique_ptr<Link> m_link;
    std::unique_ptr<Exchange> m_exchange;
    std::unique_ptr<Reconnector> m_reconnector;
    StopSignals m_stopSignals;
    StationBook m_stations;
    QString m_linkLost;
    qint64 m_lostAtMs = 0;
    QEventLoop m_loop;
    bool m_finished = false;
    int m_exitCode = 0;
};

} // namespace cnet::panel
