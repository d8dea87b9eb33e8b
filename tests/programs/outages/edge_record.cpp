#include "outages/edge_record.h"

#include "sparkplug/checker/message_reader.h"

#include <algorithm>

namespace {

const char kGood[] = "good";
const char kBirth[] = "spBv1.0/plant/NBIRTH/gate";
const QByteArray kDevice = "gate/press.1";

} // namespace

bool EdgeRecord::take(const spcheck::Message &message)
{
    if (!message.topic.startsWith("spBv1.0/plant/")) {
        return false;
    }
    m_births += message.topic == kBirth ? 1 : 0;
    const auto read = spcheck::readMessage(message.payload);
    if (!read || !message.topic.endsWith(kDevice)) {
        return true;
    }
    for (const spcheck::ReadMetric &metric : read->metrics) {
        if (metric.name && metric.alias) {
            m_names[*metric.alias] = *metric.name;
        }
        const bool isOther =
            std::any_of(metric.properties.begin(), metric.properties.end(),
                        [](const spcheck::ReadProperty &own) { return own.key == "Quality"; });
        if (!isOther && !metric.isNull) {
            m_all.append({m_names.value(metric.alias.value_or(0)),
                          whatOf(QByteArray::number(metric.number), kGood, QByteArray(),
                                 qint64(metric.timestamp.value_or(0))),
                          metric.isHistorical, m_births});
        }
    }
    return true;
}

QVector<Told> EdgeRecord::goodOnes(const QVector<Told> &taken)
{
    QVector<Told> good;
    for (const Told &told : taken) {
        const QList<QByteArray> parts = told.what.split('|');
        if (parts.value(1) == kGood) {
            good.append(
                {told.tag, whatOf(parts.first(), kGood, QByteArray(), parts.last().toLongLong())});
        }
    }
    return good;
}
