#include "panel/output/monitor_output.h"

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
            const QString line = QString::fromLatin1("%1  %2/%3:%4  %5\n")
                                     .arg(change.time.toString(QLatin1String("HH:mm:ss.zzz")))
                                     .arg(item.station)
                                     .arg(item.reg.name, item.addressText(change.offset),
                                          valueText(item.reg, change.value));
            m_device.write(line.toLocal8Bit());
        }
    }

private:
    QIODevice &m_device;
};

} // namespace

std::unique_ptr<MonitorOutput> makeTextOutput(QIODevice &device)
{
    return std::make_unique<TextOutput>(device);
}

QString valueText(const RegisterInfo &reg, quint16 value)
{
    if (reg.isBit()) {
        return QString::number(value);
    }
    const QString hex = QString::number(value, 16).toUpper().rightJustified(4, QLatin1Char('0'));
    return QString::fromLatin1("%1 0x%2").arg(value).arg(hex);
}

QString stationLine(int station, const StationCounters &counters)
{
    QString state = stateName(counters.state);
    if (counters.state == StationState::Refuses) {
        state += QString::fromLatin1(" (%1)").arg(counters.lastRefusal);
    }
    return QString::fromLatin1("station %1: %2, %3 frames, %4 answers, %5 retries, %6 bad answers, "
                               "%7 time-outs, %8 refusals, mean %9 ms, worst %10 ms")
        .arg(station)
        .arg(state)
        .arg(counters.frames)
        .arg(counters.answers)
        .arg(counters.retries)
        .arg(counters.bad)
        .arg(counters.timeouts)
        .arg(counters.refusals)
        .arg(counters.meanMs, 0, 'f', 1)
        .arg(counters.worstMs, 0, 'f', 1);
}

} // namespace cnet::panel
