#pragma once

#include "plc/setup/text_error.h"

#include <QHostAddress>

#include <optional>

namespace plc {

/** Where masters connect to. */
struct TcpAddress
{
    QHostAddress host;
    quint16 port = 0;
};

/** Where commands come from: a TCP address, or the path of a local socket. */
struct ControlAddress
{
    TcpAddress tcp;
    QString path; ///< empty: TCP

    /** Whether only programs of this machine reach it. */
    bool isLocal() const { return !path.isEmpty() || tcp.host.isLoopback(); }
};

/** "[HOST:]PORT"; HOST is an IP address or "localhost", which is the default. */
Parsed<TcpAddress> parseTcpAddress(const QString &text);

/** The same, or a path, which has a "/". */
Parsed<ControlAddress> parseControlAddress(const QString &text);

/** A whole decimal number within limits. */
std::optional<qint64> numberIn(const QString &text, qint64 lowest, qint64 highest);

} // namespace plc
