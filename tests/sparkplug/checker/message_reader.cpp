#include "sparkplug/checker/message_reader.h"

#include <QHash>
#include <QPair>

#include <functional>

namespace spcheck {

namespace {

/** One field of a message on the wire. */
struct WireField
{
    int number = 0;
    int type = 0;
    quint64 value = 0; ///< varint, or the bits of 4 or 8 bytes
    QByteArray bytes;
};

class Wire
{
public:
    explicit Wire(const QByteArray &bytes)
        : m_bytes(bytes)
    {}

    bool atEnd() const { return m_at == m_bytes.size(); }

    bool next(WireField &field)
    {
        quint64 key = 0;
        if (!varint(key) || (key >> 3) == 0) {
            return false;
        }
        field = WireField();
        field.number = static_cast<int>(key >> 3);
        field.type = static_cast<int>(key & 7);
        quint64 size = 0;
        switch (field.type) {
        case 0:
            return varint(field.value);
        case 1:
            return fixed(field.value, 8);
        case 2:
            if (!varint(size) || size > static_cast<quint64>(m_bytes.size() - m_at)) {
                return false;
            }
            field.bytes = m_bytes.mid(m_at, static_cast<int>(size));
            m_at += static_cast<int>(size);
            return true;
        case 5:
            return fixed(field.value, 4);
        default:
            return false;
        }
    }

private:
    bool varint(quint64 &value)
    {
        value = 0;
        for (int shift = 0; shift < 70 && m_at < m_bytes.size(); shift += 7) {
            const auto byte = static_cast<quint8>(m_bytes.at(m_at++));
            value |= shift < 64 ? quint64(byte & 0x7f) << shift : 0;
            if (byte < 0x80) {
                return true;
            }
        }
        return false;
    }

    bool fixed(quint64 &value, int size)
    {
        value = 0;
        for (int i = 0; i < size; ++i) {
            if (m_at >= m_bytes.size()) {
                return false;
            }
            value |= quint64(static_cast<quint8>(m_bytes.at(m_at++))) << (8 * i);
        }
        return true;
    }

    QByteArray m_bytes;
    int m_at = 0;
};

bool forEachField(const QByteArray &bytes, const std::function<bool(const WireField &)> &take)
{
    Wire wire(bytes);
    WireField field;
    while (!wire.atEnd()) {
        if (!wire.next(field) || !take(field)) {
            return false;
        }
    }
    return true;
}

bool readProperty(const QByteArray &bytes, ReadProperty &property)
{
    return forEachField(bytes, [&property](const WireField &field) {
        if (field.number == 1) {
            property.type = static_cast<int>(field.value);
        } else if (field.number == 3 || field.number == 4) {
            property.number = field.value;
            property.field = field.number == 3 ? Field::Int : Field::Long;
        } else if (field.number == 8) {
            property.field = Field::Text;
        }
        return true;
    });
}

bool readProperties(const QByteArray &bytes, QList<ReadProperty> &properties)
{
    QList<QByteArray> keys;
    const bool isWhole = forEachField(bytes, [&](const WireField &field) {
        if (field.number == 1) {
            keys.append(field.bytes);
            return true;
        }
        properties.append(ReadProperty());
        return field.number == 2 && readProperty(field.bytes, properties.last());
    });
    for (int i = 0; i < properties.size() && i < keys.size(); ++i) {
        properties[i].key = keys.at(i);
    }
    return isWhole && keys.size() == properties.size();
}

bool readValue(const WireField &field, ReadMetric &metric)
{
    static const QHash<int, QPair<Field, int>> kFields{
        {10, {Field::Int, 0}},    {11, {Field::Long, 0}},  {12, {Field::Float, 5}},
        {13, {Field::Double, 1}}, {14, {Field::Truth, 0}}, {15, {Field::Text, 2}},
        {16, {Field::Bytes, 2}},  {17, {Field::Other, 2}}, {18, {Field::Other, 2}}};
    const auto known = kFields.constFind(field.number);
    if (known == kFields.cend()) {
        return true;
    }
    metric.field = known->first;
    metric.number = field.value;
    metric.text = field.bytes;
    return field.type == known->second;
}

bool readMetric(const QByteArray &bytes, ReadMetric &metric)
{
    return forEachField(bytes, [&metric](const WireField &field) {
        switch (field.number) {
        case 1:
            metric.name = field.bytes;
            return field.type == 2;
        case 2:
            metric.alias = field.value;
            return field.type == 0;
        case 3:
            metric.timestamp = field.value;
            return field.type == 0;
        case 4:
            metric.datatype = field.value;
            return field.type == 0;
        case 5:
            metric.isHistorical = field.value != 0;
            return field.type == 0;
        case 7:
            metric.isNull = field.value != 0;
            return field.type == 0;
        case 9:
            return readProperties(field.bytes, metric.properties);
        default:
            return readValue(field, metric);
        }
    });
}

} // namespace

std::optional<ReadMessage> readMessage(const QByteArray &bytes)
{
    ReadMessage message;
    const bool isWhole = forEachField(bytes, [&message](const WireField &field) {
        switch (field.number) {
        case 1:
            message.timestamp = field.value;
            return field.type == 0;
        case 2:
            message.metrics.append(ReadMetric());
            return field.type == 2 && readMetric(field.bytes, message.metrics.last());
        case 3:
            message.seq = field.value;
            return field.type == 0;
        default:
            return true;
        }
    });
    return isWhole ? std::optional<ReadMessage>(message) : std::nullopt;
}

} // namespace spcheck
