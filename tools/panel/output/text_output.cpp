#include "panel/output/monitor_output.h"

#include "host/address/value_text.h"
#include "host/tag/typed_item.h"
#include "host/tag/value_format.h"
#include "panel/output/typed_output.h"

namespace cnet::panel {

namespace {

class TextOutput : public MonitorOutput
{
public:
    TextOutput(QIODevice &device, const QVector<Tag> &tags)
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
            const Item &item = state.item;
            write(wallTime(change.atMs), QString::fromLatin1("%1/%2:%3  %4")
                                             .arg(item.station)
                                             .arg(item.reg.name, item.addressText(change.offset),
                                                  valueText(change.value, item.reg.isBit())));
        }
    }

    void showQuality(const Monitor &monitor, int item, const QDateTime &time) override
    {
        const ItemState &state = monitor.items().at(item);
        const Tag tag = m_tags.value(item);
        const bool refused = state.quality == Quality::Refused;
        const Quality quality =
            isPlain(tag) ? state.quality : wholeQuality(readTag(tag, state), state.quality);
        write(time, QString::fromLatin1("%1  quality %2")
                        .arg(isPlain(tag) ? state.item.text() : tagText(tag),
                             refused ? state.reason() : qualityText(quality)));
    }

    void showLink(const MonitorStatus &status) override
    {
        write(status.time,
              status.linkLost.isEmpty()
                  ? QString::fromLatin1("%1  open").arg(status.link)
                  : QString::fromLatin1("%1  lost: %2").arg(status.link, status.linkLost));
    }

    void setTags(const QVector<Tag> &tags, const QVector<int> &before) override
    {
        m_told.forget(tags, before);
        m_tags = tags;
    }

private:
    void writeTyped(const Tag &tag, const QVector<TypedChange> &changes)
    {
        for (const TypedChange &change : changes) {
            write(wallTime(change.atMs),
                  QString::fromLatin1("%1  %2").arg(tagText(tag, change.index),
                                                    shownText(tag, change.value.value)));
        }
    }

    void write(const QDateTime &time, const QString &text)
    {
        m_device.write((zonedTime(time) + QLatin1String("  ") + text).toLocal8Bit() + '\n');
    }

    QIODevice &m_device;
    QVector<Tag> m_tags;
    ToldValues m_told;
};

} // namespace

std::unique_ptr<MonitorOutput> makeTextOutput(QIODevice &device, const QVector<Tag> &tags)
{
    return std::make_unique<TextOutput>(device, tags);
}

QString zonedTime(const QDateTime &time)
{
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

QString stationLine(int station, const StationCounters &counters)
{
    QString state = stateName(counters.state);
    if (counters.state == StationState::Refuses) {
        state += QString::fromLatin1(" (%1)").arg(counters.lastRefusal);
    }
    return QString::fromLatin1("station %1: %2, %3 frames, %4 answers, %5 retries, %6 bad answers, "
                               "%7 time-outs, %8 refusals, %9 late, mean %10 ms, worst %11 ms")
        .arg(station)
        .arg(state)
        .arg(counters.frames)
        .arg(counters.answers)
        .arg(counters.retries)
        .arg(counters.bad)
        .arg(counters.timeouts)
        .arg(counters.refusals)
        .arg(counters.late)
        .arg(counters.times.meanMs(), 0, 'f', 1)
        .arg(counters.times.maxMs(), 0, 'f', 1);
}

} // namespace cnet::panel
