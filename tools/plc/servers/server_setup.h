#pragma once

#include "host/capture/capture.h"
#include "plc/servers/capture_tap.h"
#include "plc/servers/connections.h"
#include "plc/stations/line.h"

#include <QElapsedTimer>
#include <QString>

#include <functional>
#include <optional>

namespace plc {

/** The settings that all servers of one program share. */
struct ServerSetup
{
    Bus *bus = nullptr;  ///< must outlive the servers
    QElapsedTimer clock; ///< running; the time for motions
    int baud = 0;        ///< see Line::setBaud()
    /** Who is connected; null: nobody wants to know. Must outlive the servers. */
    Connections *connections = nullptr;
    /** Called for each exchange, with the name of its connection; may be empty. */
    std::function<void(const QString &connection, const Exchange &)> trace;
    cnet::Capture *capture = nullptr; ///< must outlive the servers; null: none
};

/**
 * A connection of a server: it is in the list of connections as long as this object lives, its
 * requests are counted, its exchanges go to the trace and its bytes to the capture.
 */
class ServedConnection
{
public:
    /**
     * @param setup and line must outlive the object
     * @param kind "tcp" or "serial", in front of its name in a capture
     */
    ServedConnection(const ServerSetup &setup, Line &line, const char *kind, const QString &name);
    ~ServedConnection();
    ServedConnection(const ServedConnection &) = delete;
    ServedConnection &operator=(const ServedConnection &) = delete;

    /** These bytes came in, and the line has had them. */
    void received(const QByteArray &bytes);

    /** These bytes go out. */
    void sent(const QByteArray &bytes);

    /** What the line has answered will not be sent. */
    void forgetAnswers();

private:
    void note(const QString &name, const Exchange &exchange);

    const ServerSetup &m_setup;
    std::optional<CaptureTap> m_tap; ///< nothing: there is no capture
    int m_number = 0;
};

} // namespace plc
