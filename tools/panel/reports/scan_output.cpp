#include "panel/reports/scan_output.h"

#include "host/address/address.h"
#include "host/address/value_text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace cnet::panel {

namespace {

// A tenth of a millisecond is as fine as the measurement is good.
double tenths(double ms)
{
    return std::round(ms * 10) / 10;
}

QString reachText(const RegisterReach &reach)
{
    switch (reach.state) {
    case RegisterReach::State::Absent:
        return QLatin1String("not there");
    case RegisterReach::State::Present:
        return QString::fromLatin1("%1 to %2%3")
            .arg(addressText(reach.reg, reach.reg.lowest), addressText(reach.reg, reach.highest),
                 QLatin1String(reach.toLimit ? ", no higher one was asked for" : ""));
    case RegisterReach::State::Unknown:
        break;
    }
    return QLatin1String("not found out");
}

QJsonObject reachJson(const RegisterReach &reach)
{
    QJsonObject object{{QLatin1String("register"), reach.reg.name}};
    const bool present = reach.state == RegisterReach::State::Present;
    object.insert(QLatin1String("state"),
                  QLatin1String(present                                       ? "present"
                                : reach.state == RegisterReach::State::Absent ? "absent"
                                                                              : "unknown"));
    if (present) {
        object.insert(QLatin1String("lowest"), addressText(reach.reg, reach.reg.lowest));
        object.insert(QLatin1String("highest"), addressText(reach.reg, reach.highest));
        object.insert(QLatin1String("to_limit"), reach.toLimit);
    }
    return object;
}

} // namespace

QByteArray foundText(const FoundStation &found, const QString &link)
{
    QString text =
        QString::fromLatin1("station %1 on %2: %3, mean %4 ms, worst %5 ms\n")
            .arg(found.station)
            .arg(link, counted(found.answers, "answer"), QString::number(found.meanMs, 'f', 1),
                 QString::number(found.worstMs, 'f', 1));
    for (const RegisterReach &reach : found.registers) {
        text += QString::fromLatin1("  %1 %2\n").arg(reach.reg.name, -6).arg(reachText(reach));
    }
    return text.toLocal8Bit();
}

QByteArray foundJson(const FoundStation &found, const QString &link)
{
    QJsonArray registers;
    for (const RegisterReach &reach : found.registers) {
        registers.append(reachJson(reach));
    }
    const QJsonObject object{{QLatin1String("event"), QLatin1String("station")},
                             {QLatin1String("station"), found.station},
                             {QLatin1String("link"), link},
                             {QLatin1String("answers"), found.answers},
                             {QLatin1String("mean_ms"), tenths(found.meanMs)},
                             {QLatin1String("worst_ms"), tenths(found.worstMs)},
                             {QLatin1String("registers"), registers}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace cnet::panel
