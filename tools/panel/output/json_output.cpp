#include "panel/output/monitor_output.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace cnet::panel {

namespace {

// Times are measured to a tenth of a millisecond at best.
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
            line.insert(QLatin1String("time"), zonedTime(wallTime(change.atMs)));
            line.insert(QLatin1String("value"), change.value);
            write(line);
        }
    }

    void showQuality(const ItemState &state, const QDateTime &time) override
    {
        QJsonObject line = addressed("quality", state.item, 0);
        line.insert(QLatin1String("time"), zonedTime(time));
        addQuality(line, state);
        write(line);
    }

    void showLink(const MonitorStatus &status) override
    {
        QJsonObject line{{QLatin1String("event"), QLatin1String("link")},
                         {QLatin1String("time"), zonedTime(status.time)},
                         {QLatin1String("link"), status.link},
                         {QLatin1String("open"), status.linkLost.isEmpty()}};
        if (!status.linkLost.isEmpty()) {
            line.insert(QLatin1String("reason"), status.linkLost);
        }
        write(line);
    }

    void end(const Monitor &monitor, const MonitorStatus &status) override
    {
        for (const ItemState &state : monitor.items()) {
            writeItem(state, status.nowMs);
        }
        for (auto it = status.stations.cbegin(); it != status.stations.cend(); ++it) {
            writeStation(it.key(), it.value());
        }
    }

private:
    static void addQuality(QJsonObject &line, const ItemState &state)
    {
        line.insert(QLatin1String("count"), state.item.count);
        line.insert(QLatin1String("good"), state.quality == Quality::Good);
        line.insert(QLatin1String("quality"), qualityText(state.quality));
        if (!state.reason().isEmpty()) {
            line.insert(QLatin1String("reason"), state.reason());
        }
    }

    void writeItem(const ItemState &state, qint64 nowMs)
    {
        QJsonArray values;
        for (const ItemValue &value : state.values) {
            // 0 is a legal value, so one that was never read has none.
            values.append(value.known ? QJsonValue(value.value) : QJsonValue());
        }
        QJsonObject line = addressed("value", state.item, 0);
        addQuality(line, state);
        line.insert(QLatin1String("values"), values);
        line.insert(QLatin1String("changed"),
                    state.changedAtMs == 0 ? QJsonValue() : zonedTime(wallTime(state.changedAtMs)));
        const qint64 ageMs = state.ageMs(nowMs);
        line.insert(QLatin1String("age_ms"),
                    ageMs == ItemState::kNeverRead ? QJsonValue() : QJsonValue(ageMs));
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
               {QLatin1String("late"), counters.late},
               {QLatin1String("mean_ms"), tenths(counters.times.meanMs())},
               {QLatin1String("worst_ms"), tenths(counters.times.maxMs())}});
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
