#include "gateway/toml/config_units.h"

#include <QHostAddress>
#include <QRegularExpression>

#include <array>

namespace cnet::gateway {

namespace {

struct Unit
{
    const char *name;
    qint64 factor;
};

constexpr std::array<Unit, 5> kTimes{{{"d", 24LL * 60 * 60 * 1000},
                                      {"h", 60LL * 60 * 1000},
                                      {"m", 60LL * 1000},
                                      {"s", 1000},
                                      {"ms", 1}}};
constexpr std::array<Unit, 3> kSizes{
    {{"GB", 1000LL * 1000 * 1000}, {"MB", 1000LL * 1000}, {"kB", 1000}}};

// Nine digits of the greatest unit fit a qint64.
template <typename Units>
std::optional<qint64> parseUnits(const QString &text, const Units &units)
{
    static const QRegularExpression number(QLatin1String("\\A([0-9]{1,9}) ?([a-zA-Z]+)\\z"));
    const QRegularExpressionMatch match = number.match(text);
    for (const Unit &unit : units) {
        if (match.hasMatch() && match.captured(2) == QLatin1String(unit.name)) {
            return match.captured(1).toLongLong() * unit.factor;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<qint64> parseDuration(const QString &text)
{
    return text == QLatin1String("0") ? 0 : parseUnits(text, kTimes);
}

std::optional<ListenAddress> parseListenAddress(const QString &text)
{
    static const QRegularExpression form(
        QLatin1String("\\A(?:\\[([0-9a-fA-F:]+)\\]|([0-9.]+|localhost)):([0-9]{1,5})\\z"));
    constexpr int kHighestPort = 65535;
    const QRegularExpressionMatch match = form.match(text);
    const bool isIpv6 = !match.captured(1).isEmpty();
    QString host = isIpv6 ? match.captured(1) : match.captured(2);
    if (host == QLatin1String("localhost")) {
        host = QLatin1String("127.0.0.1");
    }
    const QHostAddress address(host);
    const int port = match.captured(3).toInt();
    const bool isOther = isIpv6 && address != QHostAddress(QHostAddress::LocalHostIPv6);
    if (!match.hasMatch() || !address.isLoopback() || isOther || port > kHighestPort) {
        return std::nullopt;
    }
    return ListenAddress{text, isIpv6, isIpv6 ? 0 : address.toIPv4Address(), port};
}

QString durationText(qint64 ms)
{
    for (const Unit &unit : kTimes) {
        if (ms > 0 && ms % unit.factor == 0) {
            return QString::number(ms / unit.factor) + QLatin1String(unit.name);
        }
    }
    return QLatin1String("0");
}

std::optional<qint64> parseSize(const QString &text)
{
    return parseUnits(text, kSizes);
}

} // namespace cnet::gateway
