#include "host/tag/typed_item.h"
#include "panel/output/monitor_output.h"
#include "panel/output/typed_output.h"

namespace cnet::panel {

namespace {

// No field of a plain item holds a comma or a quotation mark, so none is quoted. A row without a
// value is a change of quality, one without a station a change of the link.
class CsvOutput : public MonitorOutput
{
public:
    CsvOutput(QIODevice &device, const QVector<Tag> &tags)
        : m_device(device)
        , m_tags(tags)
        , m_named(namedTags(tags))
    {
        m_device.write("time,station,register,address,count,value,quality");
        m_device.write(m_named == NamedTags::Some ? ",name,unit\n" : "\n");
    }

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
            Tag words = tag;
            words.item = state.item;
            writeRow(wallTime(change.atMs), words, change.offset, 1, QString::number(change.value),
                     state.quality);
        }
    }

    // A row counts addresses, also where several are one value.
    void showQuality(const Monitor &monitor, int item, const QDateTime &time) override
    {
        const ItemState &state = monitor.items().at(item);
        const Tag tag = m_tags.value(item);
        const Quality quality =
            isPlain(tag) ? state.quality : wholeQuality(readTag(tag, state), state.quality);
        Tag whole = tag;
        whole.item = state.item;
        writeRow(time, whole, 0, state.item.count, QString(), quality);
    }

    void showLink(const MonitorStatus &status) override
    {
        m_device.write(
            QString::fromLatin1("%1,,,,,,%2%3\n")
                .arg(zonedTime(status.time),
                     QLatin1String(status.linkLost.isEmpty() ? "line open" : "line down"),
                     csvNames(Tag(), m_named))
                .toLatin1());
    }

    void setTags(const QVector<Tag> &tags, const QVector<int> &before) override
    {
        m_told.forget(tags, before);
        m_tags = tags;
    }

private:
    void writeTyped(const Tag &tag, const QVector<TypedChange> &changes)
    {
        const int units = tag.type.unitsPerValue();
        for (const TypedChange &change : changes) {
            writeRow(wallTime(change.atMs), tag, change.index * units, units,
                     csvValue(tag, change.value.value), change.value.quality);
        }
    }

    void writeRow(const QDateTime &time, const Tag &tag, int offset, int count,
                  const QString &value, Quality quality)
    {
        const Item &item = tag.item;
        m_device.write((QString::fromLatin1("%1,%2,%3,%4,%5,%6,%7")
                            .arg(zonedTime(time))
                            .arg(item.station)
                            .arg(item.reg.name, item.addressText(offset))
                            .arg(count)
                            .arg(value, qualityText(quality)) +
                        csvNames(tag, m_named) + QLatin1Char('\n'))
                           .toUtf8());
    }

    QIODevice &m_device;
    QVector<Tag> m_tags;
    NamedTags m_named;
    ToldValues m_told;
};

} // namespace

std::unique_ptr<MonitorOutput> makeCsvOutput(QIODevice &device, const QVector<Tag> &tags)
{
    return std::make_unique<CsvOutput>(device, tags);
}

} // namespace cnet::panel
