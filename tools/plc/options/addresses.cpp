#include "plc/options/addresses.h"

namespace plc {

std::optional<qint64> numberIn(const QString &text, qint64 lowest, qint64 highest)
{
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    if (!ok || value < lowest || value > highest) {
        return std::nullopt;
    }
    return value;
}

Parsed<TcpAddress> parseTcpAddress(const QString &text)
{
    const auto colon = text.lastIndexOf(QLatin1Char(':'));
    QString host = colon < 0 ? QString() : text.left(colon);
    const auto port = numberIn(text.mid(colon + 1), 0, 0xFFFF);
    if (host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']'))) {
        host = host.mid(1, host.size() - 2);
    }
    TcpAddress address;
    if (host.isEmpty() || host == QLatin1String("localhost")) {
        address.host = QHostAddress(QHostAddress::LocalHost);
    } else {
        address.host = QHostAddress(host);
    }
    // Qt accepts blanks and line breaks around an address.
    if (address.host.isNull() || host.trimmed() != host || !port) {
        return TextError{QString::fromLatin1(
                             "\"%1\": expected [HOST:]PORT with an IP address or localhost and a "
                             "port from 0 to 65535, for example 127.0.0.1:8000")
                             .arg(text)};
    }
    address.port = static_cast<quint16>(*port);
    return address;
}

Parsed<ControlAddress> parseControlAddress(const QString &text)
{
    if (text.contains(QLatin1Char('/'))) {
        return ControlAddress{{}, text};
    }
    const Parsed<TcpAddress> tcp = parseTcpAddress(text);
    if (const TextError *error = std::get_if<TextError>(&tcp)) {
        return TextError{error->message + QLatin1String(", or a path with a \"/\", for example "
                                                        "./plc.socket")};
    }
    return ControlAddress{std::get<TcpAddress>(tcp), QString()};
}

} // namespace plc
