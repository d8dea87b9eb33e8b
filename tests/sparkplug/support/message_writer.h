#pragma once

#include "sparkplug/checker/message_reader.h"

namespace spcheck {

/** Writes messages byte by byte, also wrong ones. */
class MessageWriter
{
public:
    static QByteArray write(const ReadMessage &message)
    {
        MessageWriter writer;
        if (message.timestamp) {
            writer.number(1, *message.timestamp);
        }
        for (const ReadMetric &metric : message.metrics) {
            writer.bytes(2, metricBytes(metric));
        }
        if (message.seq) {
            writer.number(3, *message.seq);
        }
        return writer.m_bytes;
    }

private:
    static QByteArray metricBytes(const ReadMetric &metric)
    {
        MessageWriter writer;
        if (metric.name) {
            writer.bytes(1, *metric.name);
        }
        if (metric.alias) {
            writer.number(2, *metric.alias);
        }
        if (metric.timestamp) {
            writer.number(3, *metric.timestamp);
        }
        if (metric.datatype) {
            writer.number(4, *metric.datatype);
        }
        if (metric.isHistorical) {
            writer.number(5, 1);
        }
        if (metric.isNull) {
            writer.number(7, 1);
        }
        if (!metric.properties.isEmpty()) {
            writer.bytes(9, propertyBytes(metric.properties));
        }
        writer.value(metric);
        return writer.m_bytes;
    }

    static QByteArray propertyBytes(const QList<ReadProperty> &properties)
    {
        MessageWriter writer;
        for (const ReadProperty &property : properties) {
            writer.bytes(1, property.key);
        }
        for (const ReadProperty &property : properties) {
            MessageWriter value;
            value.number(1, static_cast<quint64>(property.type));
            value.number(property.field == Field::Long ? 4 : 3, property.number);
            writer.bytes(2, value.m_bytes);
        }
        return writer.m_bytes;
    }

    void value(const ReadMetric &metric)
    {
        switch (metric.field) {
        case Field::Int:
            return number(10, metric.number);
        case Field::Long:
            return number(11, metric.number);
        case Field::Float:
            return fixed(12, metric.number, 4);
        case Field::Double:
            return fixed(13, metric.number, 8);
        case Field::Truth:
            return number(14, metric.number);
        case Field::Text:
            return bytes(15, metric.text);
        default:
            return;
        }
    }

    void varint(quint64 value)
    {
        for (; value >= 0x80; value >>= 7) {
            m_bytes.append(static_cast<char>((value & 0x7f) | 0x80));
        }
        m_bytes.append(static_cast<char>(value));
    }
    void number(int field, quint64 value)
    {
        varint(static_cast<quint64>(field) << 3);
        varint(value);
    }
    void fixed(int field, quint64 value, int size)
    {
        varint(static_cast<quint64>(field) << 3 | (size == 4 ? 5U : 1U));
        for (int i = 0; i < size; ++i) {
            m_bytes.append(static_cast<char>(value >> (8 * i) & 0xff));
        }
    }
    void bytes(int field, const QByteArray &value)
    {
        varint(static_cast<quint64>(field) << 3 | 2U);
        varint(static_cast<quint64>(value.size()));
        m_bytes.append(value);
    }

    QByteArray m_bytes;
};

} // namespace spcheck
