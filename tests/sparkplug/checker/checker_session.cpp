#include "sparkplug/checker/checker.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace spcheck {

void Checker::seeConnect(const Packet &packet)
{
    m_session = Session();
    m_session.isOpen = true;
    m_session.protocol = packet.protocol;
    expect("connect.version", packet.protocol == 4 || packet.protocol == 5,
           QString::number(packet.protocol));
    expect("connect.clean", packet.isClean && (packet.protocol != 5 || packet.sessionExpiry == 0),
           QLatin1String("the broker keeps a session"));
    expect("will.present", packet.will.has_value(), QLatin1String("without"));
    if (packet.will) {
        seeWill(*packet.will);
    }
}

void Checker::seeWill(const Message &will)
{
    const QByteArray topic = "spBv1.0/" + m_subject.group + "/NDEATH/" + m_subject.node;
    expect("will.topic", will.topic == topic, QString::fromUtf8(will.topic));
    expect("will.qos", will.qos == 1, QString::number(will.qos));
    expect("will.retain", !will.isRetained, QLatin1String("retained"));
    const auto read = readMessage(will.payload);
    const bool isAlone = read && read->metrics.size() == 1 && read->metrics.first().name == "bdSeq";
    expect("will.payload", isAlone, QLatin1String("bdSeq and nothing else"));
    expect("will.seq", !read || !read->seq, QLatin1String("it has a seq"));
    if (!isAlone) {
        return;
    }
    const ReadMetric &metric = read->metrics.first();
    const bool isNumber =
        metric.datatype == 4U && metric.field == Field::Long && metric.number < 256;
    expect("bdseq.type", isNumber, QLatin1String("expected Int64 from 0 to 255"));
    m_session.bdSeq = static_cast<int>(metric.number);
    if (m_lastBdSeq >= 0) {
        const int step = (m_session.bdSeq - m_lastBdSeq + 256) % 256;
        const bool isAnew = m_isRestarted && m_session.bdSeq == 0;
        expect("bdseq.step", (step >= 1 && step <= 1 + m_unseenConnects) || isAnew,
               QString::fromLatin1("%1 behind %2").arg(m_session.bdSeq).arg(m_lastBdSeq));
    }
    m_lastBdSeq = m_session.bdSeq;
    m_unseenConnects = 0;
    m_isRestarted = false;
}

void Checker::seeSubscribe(const Packet &packet)
{
    m_where = "SUBSCRIBE";
    for (const auto &filter : packet.filters) {
        m_session.filters.append(filter);
        if (filter.first.startsWith("spBv1.0/")) {
            expect("subscribe.qos", filter.second == 1, QString::fromUtf8(filter.first));
        }
    }
}

bool Checker::hasSubscribed(const QByteArray &topic) const
{
    const QList<QByteArray> levels = topic.split('/');
    for (const auto &filter : m_session.filters) {
        const QList<QByteArray> wanted = filter.first.split('/');
        bool isMatch = wanted.size() == levels.size() || wanted.last() == "#";
        for (int i = 0; i < wanted.size() && isMatch && wanted.at(i) != "#"; ++i) {
            isMatch = wanted.at(i) == "+" || wanted.at(i) == levels.value(i);
        }
        if (isMatch) {
            return true;
        }
    }
    return false;
}

void Checker::seeDisconnect()
{
    expect("disconnect.ndeath", m_session.isDead, QLatin1String("without an NDEATH"));
    if (m_session.wasFooled) {
        expect("state.outdated", false, QLatin1String("it leaves for an outdated word"));
    }
    m_session = Session();
}

void Checker::seeReceived(const Message &message)
{
    if (message.topic == "spBv1.0/STATE/" + m_subject.host) {
        seeHost(message.payload);
    } else if (message.topic == "spBv1.0/" + m_subject.group + "/NCMD/" + m_subject.node &&
               m_session.isBorn && !message.isRetained) {
        const auto read = readMessage(message.payload);
        for (const ReadMetric &metric : read.value_or(ReadMessage()).metrics) {
            const bool isTrue = metric.field == Field::Truth && metric.number == 1;
            if (metric.name == "Node Control/Rebirth" && isTrue) {
                m_session.isRebirthWanted = true;
            }
        }
    }
}

void Checker::seeHost(const QByteArray &payload)
{
    const QJsonObject told = QJsonDocument::fromJson(payload).object();
    const QJsonValue online = told.value(QLatin1String("online"));
    if (!online.isBool() || !told.value(QLatin1String("timestamp")).isDouble()) {
        return;
    }
    const auto atMs = static_cast<qint64>(told.value(QLatin1String("timestamp")).toDouble());
    if (atMs < m_session.hostAtMs) {
        m_session.wasFooled = m_session.isBorn && !online.toBool();
        return;
    }
    m_session.hostAtMs = atMs;
    m_session.hostOnline = online.toBool();
    m_session.mustLeave = m_session.isBorn && !m_session.hostOnline;
    m_session.wasFooled = false;
}

} // namespace spcheck
