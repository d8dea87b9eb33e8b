#include "panel/output/monitor_output.h"

namespace cnet::panel {

namespace {

// No field of a row ever holds a comma or a quotation mark, so none is quoted.
class CsvOutput : public MonitorOutput
{
public:
    explicit CsvOutput(QIODevice &device)
        : m_device(device)
    {
        m_device.write("time,station,register,address,value\n");
    }

    void showChanges(const Monitor &monitor, const QVector<ValueChange> &changes) override
    {
        for (const ValueChange &change : changes) {
            const Item &item = monitor.items().at(change.item).item;
            const QString time = change.time.toString(QLatin1String("yyyy-MM-ddTHH:mm:ss.zzz"));
            m_device.write(QString::fromLatin1("%1,%2,%3,%4,%5\n")
                               .arg(time)
                               .arg(item.station)
                               .arg(item.reg.name, item.addressText(change.offset))
                               .arg(change.value)
                               .toLatin1());
        }
    }

private:
    QIODevice &m_device;
};

} // namespace

std::unique_ptr<MonitorOutput> makeCsvOutput(QIODevice &device)
{
    return std::make_unique<CsvOutput>(device);
}

} // namespace cnet::panel
