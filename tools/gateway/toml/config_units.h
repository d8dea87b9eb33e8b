#pragma once

#include <QString>

#include <optional>

namespace cnet::gateway {

/** Milliseconds of "250ms", "10s", "5m", "2h" or "30d"; "0" is one, too. */
std::optional<qint64> parseDuration(const QString &text);

/** The shortest text that parseDuration() takes for it. */
QString durationText(qint64 ms);

/** Bytes of "512kB", "100MB" or "4GB", each unit a thousand of the one before. */
std::optional<qint64> parseSize(const QString &text);

/** Where the gateway listens: an address that only this machine reaches. */
struct ListenAddress
{
    QString text; ///< as it was given
    bool isIpv6 = false;
    quint32 ipv4 = 0;
    int port = 0; ///< 0: any that is free
};

inline bool operator==(const ListenAddress &left, const ListenAddress &right)
{
    return left.text == right.text;
}

/** "127.0.0.1:9464", "[::1]:9464" or "localhost:9464"; nothing for an address of a network. */
std::optional<ListenAddress> parseListenAddress(const QString &text);

} // namespace cnet::gateway
