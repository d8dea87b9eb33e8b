#include "plc/control/listings.h"

#include "plc/setup/apply.h"

#include <QJsonArray>

namespace plc {

namespace {

/** "1/D_W:100 = 5 6 7" */
void addValues(const Unit &unit, const Range &range, Reply &reply, QJsonArray &array)
{
    QStringList texts;
    QJsonArray numbers;
    for (int i = 0; i < range.count; ++i) {
        const Point point{range.first.device, range.first.kind, range.first.address + i};
        const int value = unit.station.memory().value(point).value_or(0);
        texts << QString::number(value);
        numbers.append(value);
    }
    const int station = unit.station.number();
    reply.lines << QString::fromLatin1("%1/%2 = %3")
                       .arg(station)
                       .arg(pointText(range.first), texts.join(QLatin1Char(' ')));
    array.append(QJsonObject{{QLatin1String("station"), station},
                             {QLatin1String("address"), pointText(range.first)},
                             {QLatin1String("values"), numbers}});
}

/** A list of what the stations have, each with its text. */
struct StationList
{
    void add(int station, const QString &text, const char *name)
    {
        reply.lines << text;
        array.append(QJsonObject{{QLatin1String("station"), station}, {QLatin1String(name), text}});
    }

    Reply taken(const char *name)
    {
        if (reply.lines.isEmpty()) {
            reply.lines << QLatin1String("none");
        }
        reply.data.insert(QLatin1String(name), array);
        return reply;
    }

    Reply reply;
    QJsonArray array;
};

} // namespace

Reply showValues(const std::vector<Range> &ranges, Bus &bus)
{
    Reply reply;
    QJsonArray array;
    qint64 shown = 0;
    for (const Range &range : ranges) {
        const auto units = unitsOf(range.station, bus);
        if (const TextError *error = std::get_if<TextError>(&units)) {
            return failure(error->message);
        }
        for (const Unit *const unit : std::get<std::vector<Unit *>>(units)) {
            if (const auto error = checkRange(*unit, range.first, range.count)) {
                return failure(error->message);
            }
            shown += range.count;
            if (shown > kMostShown) {
                return failure(QString::fromLatin1("more than %1 values at once").arg(kMostShown));
            }
            addValues(*unit, range, reply, array);
        }
    }
    reply.data.insert(QLatin1String("values"), array);
    return reply;
}

Reply listFaults(Bus &bus)
{
    StationList list;
    for (const auto &[number, unit] : bus.units()) {
        for (const Fault &fault : unit.faults.all()) {
            if (fault.times != 0) {
                list.add(number, faultText({number, fault}), "fault");
            }
        }
    }
    return list.taken("faults");
}

Reply listMotions(Bus &bus)
{
    StationList list;
    for (const auto &[number, unit] : bus.units()) {
        for (const Motion &motion : unit.motions) {
            list.add(number, motionText({number, motion}), "motion");
        }
    }
    return list.taken("motions");
}

Reply listStations(Bus &bus)
{
    StationList list;
    for (const auto &[number, unit] : bus.units()) {
        const bool full = unit.station.memory().model() == Model::Full;
        list.add(number,
                 QString::fromLatin1("%1 %2").arg(number).arg(full ? QLatin1String("full")
                                                                   : QLatin1String("k120s")),
                 "text");
    }
    return list.taken("stations");
}

Reply listConnections(const Connections &connections, qint64 nowMs)
{
    Reply reply;
    QJsonArray array;
    for (const auto &[number, connection] : connections.all()) {
        const qint64 forMs = nowMs - connection.sinceMs;
        reply.lines << QString::fromLatin1("%1 for %2 s, requests: %3")
                           .arg(connection.name)
                           .arg(forMs / 1000)
                           .arg(connection.requests);
        array.append(
            QJsonObject{{QLatin1String("client"), connection.name},
                        {QLatin1String("ms"), forMs},
                        {QLatin1String("requests"), static_cast<qint64>(connection.requests)}});
    }
    if (reply.lines.isEmpty()) {
        reply.lines << QLatin1String("none");
    }
    reply.data.insert(QLatin1String("clients"), array);
    return reply;
}

} // namespace plc
