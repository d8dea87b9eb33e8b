#include "sparkplug/checker/checker.h"

namespace spcheck {

namespace {

const QByteArray kSpace = "spBv1.0/";

} // namespace

const QStringList &Checker::rules()
{
    static const QStringList all =
        QString::fromLatin1(
            "connect.clean connect.version will.present will.topic will.qos will.retain "
            "will.payload "
            "will.seq bdseq.type bdseq.step subscribe.ncmd subscribe.dcmd subscribe.state "
            "subscribe.qos topic.form ids.characters ids.case publish.retain publish.qos "
            "payload.decodes payload.timestamp nbirth.first nbirth.seq nbirth.bdseq nbirth.rebirth "
            "birth.metrics birth.alias birth.case dbirth.first seq.step ddeath.fields ddeath.alive "
            "death.no-data ndeath.bdseq ndeath.seq ndeath.last disconnect.ndeath rebirth.answered "
            "rebirth.devices data.known data.alias data.datatype data.timestamp data.chronological "
            "data.type quality.form history.form state.wait state.offline state.outdated")
            .split(QLatin1Char(' '));
    return all;
}

Checker::Checker(Subject subject)
    : m_subject(std::move(subject))
{
    for (const QString &rule : rules()) {
        m_verdicts.insert(rule, Verdict());
    }
}

void Checker::expect(const char *rule, bool holds, const QString &detail)
{
    const QString name = QLatin1String(rule);
    Q_ASSERT(m_verdicts.contains(name));
    Verdict &verdict = m_verdicts[name];
    if (!holds && verdict.is != Verdict::Is::Fail) {
        verdict.is = Verdict::Is::Fail;
        verdict.detail = QString::fromLatin1("event %1, %2: %3")
                             .arg(m_count)
                             .arg(QString::fromUtf8(m_where), detail);
    } else if (holds && verdict.is == Verdict::Is::NotSeen) {
        verdict.is = Verdict::Is::Pass;
    }
}

QStringList Checker::failed() const
{
    QStringList names;
    for (auto verdict = m_verdicts.begin(); verdict != m_verdicts.end(); ++verdict) {
        if (verdict->is == Verdict::Is::Fail) {
            names.append(verdict.key());
        }
    }
    return names;
}

QStringList Checker::notSeen() const
{
    QStringList names;
    for (auto verdict = m_verdicts.begin(); verdict != m_verdicts.end(); ++verdict) {
        if (verdict->is == Verdict::Is::NotSeen) {
            names.append(verdict.key());
        }
    }
    return names;
}

QStringList Checker::report() const
{
    QStringList lines;
    for (auto verdict = m_verdicts.begin(); verdict != m_verdicts.end(); ++verdict) {
        const char *const word = verdict->is == Verdict::Is::Pass   ? "pass "
                                 : verdict->is == Verdict::Is::Fail ? "fail "
                                                                    : "not seen ";
        const QString more = verdict->detail.isEmpty() ? QString() : QLatin1String(": ");
        lines.append(QLatin1String(word) + verdict.key() + more + verdict->detail);
    }
    return lines;
}

void Checker::see(const Packet &packet)
{
    ++m_count;
    m_where = packet.message.topic;
    if (packet.kind == Packet::Kind::Connect) {
        m_where = "CONNECT";
        seeConnect(packet);
    } else if (packet.kind == Packet::Kind::Subscribe) {
        seeSubscribe(packet);
    } else if (packet.kind == Packet::Kind::Disconnect && packet.from == Packet::From::Node) {
        m_where = "DISCONNECT";
        seeDisconnect();
    } else if (packet.kind == Packet::Kind::Closed) {
        m_session = Session();
    } else if (packet.kind == Packet::Kind::Attempted) {
        ++m_unseenConnects;
    } else if (packet.kind == Packet::Kind::Restarted) {
        // It may have kept its number for a CONNECT that it had no time to send.
        ++m_unseenConnects;
        m_isRestarted = true;
    } else if (packet.kind == Packet::Kind::Publish && packet.from == Packet::From::Broker) {
        seeReceived(packet.message);
    } else if (packet.kind == Packet::Kind::Publish) {
        seePublished(packet.message);
    }
}

void Checker::finish()
{
    m_where = "the end";
    if (m_session.isOpen && m_session.isRebirthWanted) {
        expect("rebirth.answered", false, QLatin1String("no birth came"));
    }
    if (m_session.isOpen && m_session.mustLeave) {
        expect("state.offline", false, QLatin1String("the node stays"));
    }
}

Checker::Topic Checker::topicOf(const QByteArray &topic)
{
    static const QList<QByteArray> kNode{"NBIRTH", "NDATA", "NDEATH"};
    static const QList<QByteArray> kDevice{"DBIRTH", "DDATA", "DDEATH"};
    const QList<QByteArray> levels = topic.split('/');
    Topic read;
    read.kind = levels.value(2);
    read.device = levels.value(4);
    const bool isDevice = kDevice.contains(read.kind);
    const bool isPlace = levels.value(1) == m_subject.group && levels.value(3) == m_subject.node;
    const int count = isDevice ? 5 : 4;
    read.isRight = isPlace && levels.size() == count && (isDevice || kNode.contains(read.kind)) &&
                   (!isDevice || !read.device.isEmpty());
    expect("topic.form", read.isRight, QLatin1String("no topic of this node"));
    const bool isPlain = !topic.contains('+') && !topic.contains('#');
    expect("ids.characters", isPlain, QLatin1String("a wildcard in a name"));
    return read;
}

void Checker::seePublished(const Message &message)
{
    if (!message.topic.startsWith(kSpace)) {
        return;
    }
    const Topic topic = topicOf(message.topic);
    if (!topic.isRight) {
        return;
    }
    expect("publish.retain", !message.isRetained, QLatin1String("retained"));
    expect("publish.qos", message.qos == (topic.kind == "NDEATH" ? 1 : 0),
           QString::fromLatin1("QoS %1").arg(message.qos));
    const auto read = readMessage(message.payload);
    expect("payload.decodes", read.has_value(), QLatin1String("no message"));
    if (read) {
        seeMessage(topic, *read);
    }
}

void Checker::seeMessage(const Topic &topic, const ReadMessage &read)
{
    expect("ndeath.last", !m_session.isDead, QLatin1String("the node is dead"));
    seeLeaving(topic);
    if (topic.kind == "NDEATH") {
        seeNodeDeath(read);
        return;
    }
    expect("payload.timestamp", read.timestamp.has_value(), QLatin1String("without"));
    expect("nbirth.first", m_session.isBorn || topic.kind == "NBIRTH",
           QLatin1String("no NBIRTH yet"));
    seeNumber(topic, read);
    if (topic.kind == "NBIRTH") {
        seeNodeBirth(read);
    } else if (topic.kind == "DBIRTH") {
        seeDeviceBirth(topic.device, read);
    } else if (topic.kind == "DDEATH") {
        seeDeviceDeath(topic.device, read);
    } else {
        seeData(topic, read);
    }
}

void Checker::seeNumber(const Topic &topic, const ReadMessage &read)
{
    const int seq = read.seq ? static_cast<int>(*read.seq) : -1;
    if (topic.kind == "NBIRTH") {
        expect("nbirth.seq", seq == 0, QString::number(seq));
    } else if (m_session.isBorn) {
        expect("seq.step", seq == (m_session.seq + 1) % 256,
               QString::fromLatin1("%1 behind %2").arg(seq).arg(m_session.seq));
    }
    m_session.seq = seq;
}

// What a node may say when its host went away, and when an outdated word only said so.
void Checker::seeLeaving(const Topic &topic)
{
    const bool isDeath = topic.kind == "NDEATH";
    if (m_session.mustLeave) {
        expect("state.offline", isDeath, QLatin1String("it goes on without its host"));
        m_session.mustLeave = false;
    } else if (m_session.wasFooled) {
        expect("state.outdated", !isDeath, QLatin1String("it leaves for an outdated word"));
        m_session.wasFooled = false;
    }
}

} // namespace spcheck
