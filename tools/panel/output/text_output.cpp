#include "panel/output/monitor_output.h"

#include "host/address/value_text.h"

namespace cnet::panel {

namespace {

class TextOutput : public MonitorOutput
{
public:
    explicit TextOutput(QIODevice &device)
        : m_device(device)
    {}

    void showChanges(const Monitor &monitor, const QVector<ValueChange> &changes) override
    {
        for (const ValueChange &change : changes) {
            const Item &item = monitor.items().at(change.item).item;
            write(wallTime(change.atMs), QString::fromLatin1("%1/%2:%3  %4")
                                             .arg(item.station)
                                             .arg(item.reg.name, item.addressText(change.offset),
                                                  valueText(change.value, item.reg.isBit())));
        }
    }

    void showQuality(const ItemState &state, const QDateTime &time) override
    {
        const bool refused = state.quality == Quality::Refused;
        write(time,
              QString::fromLatin1("%1  quality %2")
                  .arg(state.item.text(), refused ? state.reason() : qualityText(state.quality)));
    }

    void showLink(const MonitorStatus &status) override
    {
        write(status.time,
              status.linkLost.isEmpty()
                  ? QString::fromLatin1("%1  open").arg(status.link)
                  : QString::fromLatin1("%1  lost: %2").arg(status.link, status.linkLost));
    }

private:
    void write(const QDateTime &time, const QString &text)
    {
        m_device.write((zonedTime(time) + QLatin1String("  ") + text).toLocal8Bit() + '\n');
    }

    QIODevice &m_device;
};

} // namespace

std::unique_ptr<MonitorOutput> makeTextOutput(QIODevice &device)
{
    return std::make_unique<TextOutput>(device);
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
