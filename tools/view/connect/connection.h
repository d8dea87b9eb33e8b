#pragma once

#include "host/link/link_address.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace cnet::view {

/** What somebody connects to, and how often it is asked. */
struct Connection
{
    enum class Kind {
        Simulator, ///< the press line inside the program
        Tcp,
        Serial,
    };

    Kind kind = Kind::Simulator;
    /** Of Tcp and Serial; its line also tells what frames take. A simulator with 0 baud answers as
     * fast as it can. */
    LinkAddress address;
    int station = 1;      ///< of what names none, 0 to 31
    int intervalMs = 100; ///< between the begins of two rounds, 0 to 60000; 0: at once
    int timeoutMs = 0;    ///< for an answer, 0 to 60000; 0: found out

    /** What frames take on its line; with the usual speed where it has none. */
    LineSettings lineSettings() const;

    /** What people call it: "tcp:192.168.0.100:8000", "serial:/dev/ttyS0,38400,8,NONE,1". */
    QString text() const;

    /** For a project, and the list of recent ones. */
    QJsonObject saved() const;
    /** @return empty where it is not what saved() gives: a kind, a host or a bound is wrong */
    static std::optional<Connection> restored(const QJsonObject &object);
};

bool operator==(const Connection &left, const Connection &right);

} // namespace cnet::view
