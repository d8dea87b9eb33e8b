#include "view/connect/connection.h"

#include <QCoreApplication>

namespace cnet::view {

namespace {

const QLatin1String kSimulator("simulator");
constexpr int kMostMs = 60000;
constexpr int kMostStation = 31;

std::optional<int> numberWithin(const QJsonObject &object, const char *key, int usual, int most)
{
    const QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined()) {
        return usual;
    }
    const int number = value.toInt(-1);
    return number >= 0 && number <= most ? std::optional<int>(number) : std::nullopt;
}

/** As parseLinkAddress() takes it. */
QString linkText(const Connection &connection)
{
    const LinkAddress &address = connection.address;
    if (connection.kind == Connection::Kind::Tcp) {
        return QString::fromLatin1("tcp:%1:%2").arg(address.host).arg(address.port);
    }
    return QString::fromLatin1("serial:%1,%2").arg(address.device, address.line.text());
}

} // namespace

LineSettings Connection::lineSettings() const
{
    LineSettings line = address.line;
    if (line.baud <= 0) {
        line.baud = LineSettings().baud;
    }
    return line;
}

QString Connection::text() const
{
    return kind == Kind::Simulator
               ? QCoreApplication::translate("Connection", "simulated press line")
               : linkText(*this);
}

QJsonObject Connection::saved() const
{
    return {
        {QLatin1String("link"), kind == Kind::Simulator ? QString(kSimulator) : linkText(*this)},
        {QLatin1String("line"), address.line.text()},
        {QLatin1String("station"), station},
        {QLatin1String("intervalMs"), intervalMs},
        {QLatin1String("timeoutMs"), timeoutMs}};
}

std::optional<Connection> Connection::restored(const QJsonObject &object)
{
    Connection result;
    const Connection usual;
    const QString link = object.value(QLatin1String("link")).toString();
    QString error;
    if (link != kSimulator) {
        const auto address = parseLinkAddress(link, error);
        if (!address) {
            return std::nullopt;
        }
        result.address = *address;
        result.kind = address->kind == LinkAddress::Kind::Tcp ? Kind::Tcp : Kind::Serial;
    }
    if (result.kind != Kind::Serial) {
        const auto line = parseLineSettings(object.value(QLatin1String("line")).toString(), error);
        result.address.line = line.value_or(LineSettings());
    }
    const auto station = numberWithin(object, "station", usual.station, kMostStation);
    const auto intervalMs = numberWithin(object, "intervalMs", usual.intervalMs, kMostMs);
    const auto timeoutMs = numberWithin(object, "timeoutMs", usual.timeoutMs, kMostMs);
    if (!station || !intervalMs || !timeoutMs) {
        return std::nullopt;
    }
    result.station = *station;
    result.intervalMs = *intervalMs;
    result.timeoutMs = *timeoutMs;
    return result;
}

bool operator==(const Connection &left, const Connection &right)
{
    return left.saved() == right.saved();
}

} // namespace cnet::view
