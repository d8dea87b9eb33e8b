#include "panel/output/monitor_output.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace cnet::panel {

namespace {

QString isoTime(const QDateTime &time)
{
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

// A tenth of a millisecond is as fine as the measurement is good.
double tenths(double ms)
{
    return std::round(ms * 10) / 10;
}

QJsonObject addressed(const char *event, const Item &item, int offset)
{
    return {{QLatin1String("event"), QLatin1String(event)},
            {QLatin1String("item"), item.text()},
            {QLatin1String("station"), item.station},
            {QLatin1String("register"), item.reg.name},
            {QLatin1String("address"), item.addressText(offset)}};
}

class JsonOutput : public MonitorOutput
{
public:
    explicit JsonOutput(QIODevice &device)
        : m_device(device)
    {}

    void showChanges(const Monitor &monitor, const QVector<ValueChange> &changes) override
    {
        for (const ValueChange &change : changes) {
            const Item &item = monitor.items().at(change.item).item;
            QJsonObject line = addressed("change", item, change.offset);
            line.insert(QLatin1String("time"), isoTime(change.time));
            line.insert(QLatin1String("value"), change.value);
            write(line);
        }
    }

    void end(const Monitor &monitor, const MonitorStatus &status) override
    {
        for (const WatchedItem &watched : monitor.items()) {
            writeItem(watched, status.nowMs);
        }
        for (auto it = status.stations.cbegin(); it != status.stations.cend(); ++it) {
            writeStation(it.key(), it.value());
        }
    }

private:
    void writeItem(const WatchedItem &watched, qint64 nowMs)
    {
        QJsonArray values;
        for (int i = 0; i < watched.values.size(); ++i) {
            // 0 is a legal value, so what was never read is none.
            values.append(watched.known.at(i) ? QJsonValue(watched.values.at(i)) : QJsonValue());
        }
        QJsonObject line = addressed("value", watched.item, 0);
        line.insert(QLatin1String("count"), watched.item.count);
        line.insert(QLatin1String("values"), values);
        line.insert(QLatin1String("good"), watched.everRead() && !watched.failed());
        line.insert(QLatin1String("changed"), watched.lastChange.isNull()
                                                  ? QJsonValue()
                                                  : QJsonValue(isoTime(watched.lastChange)));
        line.insert(QLatin1String("age_ms"),
                    watched.everRead() ? QJsonValue(watched.ageMs(nowMs)) : QJsonValue());
        write(line);
    }

    void writeStation(int station, const StationCounters &counters)
    {
        write({{QLatin1String("event"), QLatin1String("station")},
               {QLatin1String("station"), station},
               {QLatin1String("state"), stateName(counters.state)},
               {QLatin1String("frames"), counters.frames},
               {QLatin1String("answers"), counters.answers},
               {QLatin1String("retries"), counters.retries},
               {QLatin1String("bad_answers"), counters.bad},
               {QLatin1String("timeouts"), counters.timeouts},
               {QLatin1String("refusals"), counters.refusals},
               {QLatin1String("mean_ms"), tenths(counters.meanMs)},
               {QLatin1String("worst_ms"), tenths(counters.worstMs)}});
    }

    void write(const QJsonObject &object)
    {
        m_device.write(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
    }

    QIODevice &m_device;
};

} // namespace

std::unique_ptr<MonitorOutput> makeJsonOutput(QIODevice &device)
{
    return std::make_unique<JsonOutput>(device);
}

} // namespace cnet::panel
