#include "host/link/link_address.h"

#include <QStringList>

#include <limits>

namespace cnet {

namespace {

const char *parityName(Parity parity)
{
    switch (parity) {
    case Parity::Even:
        return "EVEN";
    case Parity::Odd:
        return "ODD";
    case Parity::None:
        break;
    }
    return "NONE";
}

std::optional<Parity> readParity(const QString &text)
{
    for (const Parity parity : {Parity::None, Parity::Even, Parity::Odd}) {
        if (text.compare(QLatin1String(parityName(parity)), Qt::CaseInsensitive) == 0) {
            return parity;
        }
    }
    return std::nullopt;
}

bool readNumber(const QString &text, int low, int high, int &value)
{
    bool ok = false;
    value = text.toInt(&ok);
    return ok && value >= low && value <= high;
}

bool readLine(const QStringList &fields, LineSettings &line)
{
    if (fields.size() > 5) {
        return false;
    }
    const int highestBaud = 4000000;
    if (fields.size() > 1 && !readNumber(fields.at(1), 50, highestBaud, line.baud)) {
        return false;
    }
    if (fields.size() > 2 && !readNumber(fields.at(2), 7, 8, line.dataBits)) {
        return false;
    }
    if (fields.size() > 3) {
        const auto parity = readParity(fields.at(3));
        if (!parity) {
            return false;
        }
        line.parity = *parity;
    }
    return fields.size() <= 4 || readNumber(fields.at(4), 1, 2, line.stopBits);
}

std::optional<LinkAddress> readTcp(const QString &rest, QString &error)
{
    LinkAddress address;
    address.kind = LinkAddress::Kind::Tcp;
    const int colon = static_cast<int>(rest.lastIndexOf(QLatin1Char(':')));
    int port = 0;
    address.host = rest.left(colon);
    // An IPv6 address has colons of its own and stands in brackets.
    if (address.host.startsWith(QLatin1Char('[')) && address.host.endsWith(QLatin1Char(']'))) {
        address.host = address.host.mid(1, address.host.size() - 2);
    }
    if (colon < 1 || address.host.isEmpty() ||
        !readNumber(rest.mid(colon + 1), 1, std::numeric_limits<quint16>::max(), port)) {
        error = QLatin1String("expected tcp:HOST:PORT with a port from 1 to 65535, "
                              "for example tcp:192.168.0.100:8000");
        return std::nullopt;
    }
    address.port = static_cast<quint16>(port);
    return address;
}

std::optional<LinkAddress> readSerial(const QString &rest, QString &error)
{
    LinkAddress address;
    address.kind = LinkAddress::Kind::Serial;
    const QStringList fields = rest.split(QLatin1Char(','));
    address.device = fields.first();
    if (address.device.isEmpty() || !readLine(fields, address.line)) {
        error = QLatin1String("expected serial:DEVICE[,BAUD,7|8,NONE|EVEN|ODD,1|2], "
                              "for example serial:/dev/ttyS0,38400,8,NONE,1");
        return std::nullopt;
    }
    return address;
}

} // namespace

int LineSettings::bitsOfCharacter() const
{
    return 1 + dataBits + (parity == Parity::None ? 0 : 1) + stopBits;
}

int LineSettings::characterMicroseconds() const
{
    return bitsOfCharacter() * 1000000 / baud;
}

std::optional<LineSettings> parseLineSettings(const QString &text, QString &error)
{
    LineSettings line;
    const QStringList fields = text.split(QLatin1Char(','));
    // As behind the device of a serial link.
    if (!text.isEmpty() && readLine(QStringList(QString()) + fields, line)) {
        return line;
    }
    error = QLatin1String("expected BAUD[,7|8,NONE|EVEN|ODD,1|2], for example 38400,8,NONE,1");
    return std::nullopt;
}

QString LineSettings::text() const
{
    return QString::fromLatin1("%1,%2,%3,%4")
        .arg(baud)
        .arg(dataBits)
        .arg(QLatin1String(parityName(parity)))
        .arg(stopBits);
}

std::optional<LinkAddress> parseLinkAddress(const QString &text, QString &error)
{
    std::optional<LinkAddress> address;
    QString detail = QLatin1String("expected tcp:HOST:PORT or serial:DEVICE");
    if (text.startsWith(QLatin1String("tcp:"))) {
        address = readTcp(text.mid(4), detail);
    } else if (text.startsWith(QLatin1String("serial:"))) {
        address = readSerial(text.mid(7), detail);
    }
    if (!address) {
        error = QString::fromLatin1("link '%1': %2").arg(text, detail);
    }
    return address;
}

} // namespace cnet
