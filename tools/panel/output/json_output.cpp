#include "host/tag/typed_item.h"
#include "panel/output/monitor_output.h"
#include "panel/output/typed_output.h"

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

QJsonObject addressed(const char *event, const Item &item, const Tag &tag, int offset)
{
    QJsonObject line{{QLatin1String("event"), QLatin1String(event)},
                     {QLatin1String("item"), isPlain(tag) ? item.text() : typedItemText(tag)},
                     {QLatin1String("station"), item.station},
                     {QLatin1String("register"), item.reg.name},
                     {QLatin1String("address"), item.addressText(offset)}};
    addNames(line, tag);
    return line;
}

class JsonOutput : public MonitorOutput
{
public:
    JsonOutput(QIODevice &device, const QVector<Tag> &tags)
        : m_device(device)
        , m_tags(tags)
    {}

    void showChanges(const Monitor &monitor, const QVector<ValueChange> &changes) override
    {
        for (int i = 0; i < changes.size();) {
            const ItemState &state = monitor.items().at(changes.at(i).item);
            const Tag tag = m_tags.value(changes.at(i).item);
            if (!isPlain(tag)) {
                writeTyped(tag, m_told.toTell(tag, typedChanges(tag, state, changes, i)));
                continue;
            }
            const ValueChange &change = changes.at(i++);
            QJsonObject line = addressed("change", state.item, tag, change.offset);
            line.insert(QLatin1String("time"), zonedTime(wallTime(change.atMs)));
            line.insert(QLatin1String("value"), change.value);
            write(line);
        }
    }

    void showQuality(const Monitor &monitor, int item, const QDateTime &time) override
    {
        const ItemState &state = monitor.items().at(item);
        QJsonObject line = addressed("quality", state.item, m_tags.value(item), 0);
        line.insert(QLatin1String("time"), zonedTime(time));
        addQuality(line, state, m_tags.value(item));
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
        for (int i = 0; i < monitor.items().size(); ++i) {
            writeItem(monitor.items().at(i), m_tags.value(i), status.nowMs);
        }
        for (auto it = status.stations.cbegin(); it != status.stations.cend(); ++it) {
            writeStation(it.key(), it.value());
        }
    }

    void setTags(const QVector<Tag> &tags, const QVector<int> &before) override
    {
        m_told.forget(tags, before);
        m_tags = tags;
    }

private:
    static void addQuality(QJsonObject &line, const ItemState &state, const Tag &tag)
    {
        Quality quality = state.quality;
        QString reason = state.reason();
        if (!isPlain(tag)) {
            const QVector<TagValue> values = readTag(tag, state);
            quality = wholeQuality(values, state.quality);
            reason = quality == Quality::Implausible ? firstFault(values) : reason;
        }
        line.insert(QLatin1String("count"), isPlain(tag) ? state.item.count : tag.count);
        line.insert(QLatin1String("good"), quality == Quality::Good);
        line.insert(QLatin1String("quality"), qualityText(quality));
        if (!reason.isEmpty()) {
            line.insert(QLatin1String("reason"), reason);
        }
    }

    void writeTyped(const Tag &tag, const QVector<TypedChange> &changes)
    {
        for (const TypedChange &change : changes) {
            QJsonObject line =
                addressed("change", tag.item, tag, change.index * tag.type.unitsPerValue());
            line.insert(QLatin1String("time"), zonedTime(wallTime(change.atMs)));
            line.insert(QLatin1String("value"), jsonValue(change.value.value.value));
            const QString fault = faultText(change.value.value.fault);
            if (!fault.isEmpty()) {
                line.insert(QLatin1String("fault"), fault);
            }
            write(line);
        }
    }

    void writeItem(const ItemState &state, const Tag &tag, qint64 nowMs)
    {
        QJsonArray values;
        for (const ItemValue &value : state.values) {
            // 0 is a legal value, so one that was never read has none.
            values.append(value.known ? QJsonValue(value.value) : QJsonValue());
        }
        QJsonObject line = addressed("value", state.item, tag, 0);
        addQuality(line, state, tag);
        line.insert(QLatin1String("values"), values);
        if (!isPlain(tag)) {
            addTypedValues(line, tag, readTag(tag, state));
        }
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
    QVector<Tag> m_tags;
    ToldValues m_told;
};

} // namespace

std::unique_ptr<MonitorOutput> makeJsonOutput(QIODevice &device, const QVector<Tag> &tags)
{
    return std::make_unique<JsonOutput>(device, tags);
}

} // namespace cnet::panel
