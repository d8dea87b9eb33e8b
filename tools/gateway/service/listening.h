#pragma once

#include "gateway/config/gateway_config.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace cnet::gateway {

/** A socket that listens; whoever gets the descriptor closes it. */
struct Listening
{
    int descriptor = -1;
    int port = 0; ///< that it got; 0 for a local one
};

/** @param error receives one sentence when the result is empty */
std::optional<Listening> listenOnLoopback(const ListenAddress &address, QString &error);

/**
 * The same on a file in a folder, for programs of this machine. A file that a killed gateway left
 * is replaced, and not one at which somebody listens.
 */
std::optional<Listening> listenInFolder(const QString &folder, QString &error);

/** Takes that file away. */
void stopListeningInFolder(const QString &folder);

/**
 * Asks the gateway that listens there for a page.
 * @param path "/status"
 * @return its body
 */
std::optional<QByteArray> askInFolder(const QString &folder, const QByteArray &path,
                                      QString &error);

/** Name of the file. */
QString listeningFile();

} // namespace cnet::gateway
