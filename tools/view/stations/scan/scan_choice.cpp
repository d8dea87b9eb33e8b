#include "view/stations/scan/scan_choice.h"

#include "host/address/address.h"
#include "host/address/item.h"
#include "host/scan/likely_settings.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

namespace cnet::view {

namespace {

class ScanChoice
{
    Q_DECLARE_TR_FUNCTIONS(ScanChoice)
};

/** "8" or "8-15" */
bool readStations(const QString &text, QVector<int> &stations)
{
    const QStringList ends = text.split(QLatin1Char('-'));
    bool firstOk = false;
    bool lastOk = false;
    const int first = ends.first().trimmed().toInt(&firstOk);
    const int last = ends.last().trimmed().toInt(&lastOk);
    if (ends.size() > 2 || !firstOk || !lastOk || first < 0 || last < first ||
        last > kHighestStation) {
        return false;
    }
    for (int station = first; station <= last; ++station) {
        if (!stations.contains(station)) {
            stations.append(station);
        }
    }
    return true;
}

/** What the line is set to now comes first. */
QVector<LineSettings> startingWith(const LineSettings &first, const QVector<LineSettings> &others)
{
    QVector<LineSettings> all;
    for (const LineSettings &line : others) {
        if (line.text() == first.text()) {
            all.prepend(line);
        } else {
            all.append(line);
        }
    }
    return all;
}

QVector<LineSettings> withBaud(int baud)
{
    QVector<LineSettings> result;
    const auto all = likelySettings();
    for (const LineSettings &line : all) {
        if (line.baud == baud) {
            result.append(line);
        }
    }
    return result;
}

QVector<int> likelyBauds()
{
    QVector<int> bauds;
    const auto all = likelySettings();
    for (const LineSettings &line : all) {
        if (!bauds.contains(line.baud)) {
            bauds.append(line.baud);
        }
    }
    return bauds;
}

QString reachText(const RegisterReach &reach)
{
    return QString::fromLatin1("%1 %2-%3")
        .arg(reach.reg.name, addressText(reach.reg, reach.reg.lowest),
             addressText(reach.reg, reach.highest));
}

} // namespace

std::optional<QVector<int>> parseStations(const QString &text)
{
    QVector<int> stations;
    const QStringList parts = text.split(QLatin1Char(','));
    for (const QString &part : parts) {
        if (!readStations(part, stations)) {
            return std::nullopt;
        }
    }
    return stations;
}

QVector<SpeedChoice> speedChoices(const Connection &connection)
{
    const LineSettings now = connection.lineSettings();
    if (connection.kind != Connection::Kind::Serial) {
        return {{ScanChoice::tr("as the line is"), {now}}};
    }
    QVector<SpeedChoice> choices = {{ScanChoice::tr("as now: %1").arg(now.text()), {now}}};
    auto all = startingWith(now, likelySettings());
    if (all.first().text() != now.text()) {
        all.prepend(now);
    }
    choices.append({ScanChoice::tr("all usual settings, until something answers"), all});
    const auto bauds = likelyBauds();
    for (const int baud : bauds) {
        choices.append({ScanChoice::tr("%1 baud with any parity and stop bits").arg(baud),
                        startingWith(now, withBaud(baud))});
    }
    return choices;
}

QVector<RegisterInfo> scannedRegisters(const RegisterCatalog &registers)
{
    QVector<RegisterInfo> words;
    for (const RegisterInfo &reg : registers.all()) {
        if (reg.width == RegisterWidth::Word && reg.form == AddressForm::Plain) {
            words.append(reg);
        }
    }
    return words;
}

QString reachWords(const FoundStation &found)
{
    QStringList present;
    QStringList absent;
    QStringList unknown;
    for (const RegisterReach &reach : found.registers) {
        switch (reach.state) {
        case RegisterReach::State::Present:
            present << reachText(reach);
            break;
        case RegisterReach::State::Absent:
            absent << reach.reg.name;
            break;
        case RegisterReach::State::Unknown:
            unknown << reach.reg.name;
            break;
        }
    }
    const QString comma = QLatin1String(", ");
    QStringList parts;
    if (!present.isEmpty()) {
        parts << present.join(comma);
    }
    if (!absent.isEmpty()) {
        parts << ScanChoice::tr("not there: %1").arg(absent.join(comma));
    }
    if (!unknown.isEmpty()) {
        parts << ScanChoice::tr("not found out: %1").arg(unknown.join(comma));
    }
    return parts.join(QLatin1String("; "));
}

} // namespace cnet::view
