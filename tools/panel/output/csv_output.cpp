#include "panel/output/monitor_output.h"

namespace cnet::panel {

namespace {

// No field of a row ever holds a comma or a quotation mark, so none is quoted. A row without a
// value is a change of quality, one without a station a change of the link.
class CsvOutput : public MonitorOutput
{
public:
    explicit CsvOutput(QIODevice &device)
        : m_device(device)
    {
        m_device.write("time,station,register,address,count,value,quality\n");
    }

    void showChanges(const Monitor &monitor, const QVector<ValueChange> &changes) override
    {
        for (const ValueChange &change : changes) {
            const ItemState &state = monitor.items().at(change.item);
            writeRow(wallTime(change.atMs), state.item, change.offset, 1,
                     QString::number(change.value), state.quality);
        }
    }

    void showQuality(const ItemState &state, const QDateTime &time) override
    {
        writeRow(time, state.item, 0, state.item.count, QString(), state.quality);
    }

    void showLink(const MonitorStatus &status) override
    {
        m_device.write(
            QString::fromLatin1("%1,,,,,,%2\n")
                .arg(zonedTime(status.time),
                     QLatin1String(status.linkLost.isEmpty() ? "line open" : "line down"))
                .toLatin1());
    }

private:
    void writeRow(const QDateTime &time, const Item &item, int offset, int count,
                  const QString &value, Quality quality)
    {
        m_device.write(QString::fromLatin1("%1,%2,%3,%4,%5,%6,%7\n")
                           .arg(zonedTime(time))
                           .arg(item.station)
                           .arg(item.reg.name, item.addressText(offset))
                           .arg(count)
                           .arg(value, qualityText(quality))
                           .toLatin1());
    }

    QIODevice &m_device;
};

} // namespace

std::unique_ptr<MonitorOutput> makeCsvOutput(QIODevice &device)
{
    return std::make_unique<CsvOutput>(device);
}

} // namespace cnet::panel
