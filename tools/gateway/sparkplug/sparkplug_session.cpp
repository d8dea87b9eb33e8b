#include "gateway/sparkplug/sparkplug_session.h"

#include <utility>

namespace cnet::gateway {

namespace {

constexpr int kNumbers = 256;
constexpr int kLongestWaitMs = 10000;
constexpr int kLongestSilenceMs = 20000;
// However often hosts ask: a storm of them would be answered with one of births.
constexpr int kRebirthEveryMs = 5000;
const QLatin1String kRebirth("Node Control/Rebirth");
const QLatin1String kBdSeq("bdSeq");

} // namespace

SparkplugSession::SparkplugSession(const SparkplugSettings &settings, MqttConnection &connection,
                                   Clock &clock)
    : m_settings(settings)
    , m_connection(connection)
    , m_clock(clock)
    , m_topics(settings.group, settings.node)
    , m_bdSeq(settings.numberFile)
    , m_waits(clock.makeAlarm())
    , m_silence(clock.makeAlarm())
    , m_rebirth(clock.makeAlarm())
{
    connect(&connection, &MqttConnection::connected, this, &SparkplugSession::handleConnected);
    connect(&connection, &MqttConnection::lost, this, &SparkplugSession::handleLost);
    connect(&connection, &MqttConnection::published, this, &SparkplugSession::handlePublished);
    connect(&connection, &MqttConnection::received, this, &SparkplugSession::handleReceived);
    connect(m_waits.get(), &Alarm::fired, this, &SparkplugSession::sayStillWaiting);
    connect(m_silence.get(), &Alarm::fired, this, &SparkplugSession::handleSilence);
    connect(m_rebirth.get(), &Alarm::fired, this, [this] {
        m_isRebirthSoon = false;
        if (std::exchange(m_isRebirthWanted, false)) {
            requestBirth();
        }
    });
}

void SparkplugSession::begin()
{
    switch (m_state) {
    case State::Off:
        m_state = State::Connecting;
        if (std::exchange(m_isNumberUsed, true)) {
            m_bdSeq.next();
        }
        m_silence->set(kLongestSilenceMs);
        m_connection.open(m_broker, death());
        break;
    case State::Waiting:
        m_waits->set(kLongestWaitMs);
        break;
    case State::Connecting:
    case State::Born:
        break;
    }
}

Metric SparkplugSession::bdSeqMetric() const
{
    Metric metric;
    metric.name = kBdSeq;
    metric.atMs = m_clock.wallMs();
    metric.datatype = Datatype::Int64;
    metric.tellsDatatype = true;
    metric.value = qint64(m_bdSeq.now());
    return metric;
}

MqttMessage SparkplugSession::death() const
{
    MqttMessage message;
    message.topic = m_topics.ofNode("NDEATH");
    message.payload = encodePayload({m_clock.wallMs(), std::nullopt, {bdSeqMetric()}});
    message.qos = 1;
    return message;
}

// All subscriptions go out before the birth: whoever sees it may send a command at once.
void SparkplugSession::handleConnected()
{
    m_state = State::Waiting;
    m_silence->cancel();
    m_marks.clear();
    m_host.forget();
    m_isRebirthWanted = false;
    QStringList filters{m_topics.ofNode("NCMD"), m_topics.deviceCommands()};
    if (!m_settings.primaryHost.isEmpty()) {
        filters.append(SparkplugTopics::ofHost(m_settings.primaryHost));
        m_waits->set(kLongestWaitMs);
    }
    m_connection.subscribe(filters, 1);
    if (m_settings.primaryHost.isEmpty()) {
        bear();
    }
}

void SparkplugSession::sayStillWaiting()
{
    const QString reason =
        QString::fromLatin1("the primary host %1 is not online").arg(m_settings.primaryHost);
    if (m_settings.connection.brokers.size() > 1) {
        leave(reason);
    } else {
        Q_EMIT failed(reason);
    }
}

// It neither accepts nor refuses, or confirms nothing: something is wrong with it.
void SparkplugSession::handleSilence()
{
    leave(QLatin1String("the broker does not answer"));
}

void SparkplugSession::handleLost(const QString &reason)
{
    // One that worked is tried again first.
    m_broker += m_state == State::Connecting ? 1 : 0;
    m_isNumberUsed = m_connection.wasReached();
    m_state = State::Off;
    m_waits->cancel();
    m_silence->cancel();
    m_marks.clear();
    Q_EMIT failed(reason);
}

void SparkplugSession::leave(const QString &reason)
{
    ++m_broker;
    end();
    Q_EMIT failed(reason);
}

void SparkplugSession::end()
{
    m_waits->cancel();
    m_silence->cancel();
    m_marks.clear();
    if (m_state == State::Waiting || m_state == State::Born) {
        m_connection.publish(death());
    }
    if (std::exchange(m_state, State::Off) != State::Off) {
        m_connection.close();
    }
}

void SparkplugSession::handleReceived(const MqttMessage &message)
{
    if (m_state != State::Waiting && m_state != State::Born) {
        return;
    }
    const QString device = m_topics.commandedDevice(message.topic);
    if (message.topic == SparkplugTopics::ofHost(m_settings.primaryHost)) {
        handleState(message.payload);
    } else if (message.topic == m_topics.ofNode("NCMD")) {
        handleNodeCommand(message);
    } else if (!device.isEmpty() && isBorn()) {
        Q_EMIT commanded(device, decodePayload(message.payload), message.isRetained);
    }
}

void SparkplugSession::handleState(const QByteArray &payload)
{
    m_host.take(payload);
    if (m_host.is() == HostState::Is::Online && m_state == State::Waiting) {
        m_waits->cancel();
        bear();
    } else if (m_host.is() == HostState::Is::Offline &&
               (m_state == State::Born || m_settings.connection.brokers.size() > 1)) {
        leave(QString::fromLatin1("the primary host %1 is offline").arg(m_settings.primaryHost));
    }
}

void SparkplugSession::handleNodeCommand(const MqttMessage &message)
{
    // One that a broker kept would ask again at each connect.
    const auto metrics = message.isRetained ? std::nullopt : decodePayload(message.payload);
    for (const CameMetric &metric : metrics.value_or(QVector<CameMetric>())) {
        const auto *isWanted = std::get_if<bool>(&metric.value);
        if (metric.name == kRebirth && isWanted != nullptr && *isWanted) {
            requestBirth();
            return;
        }
    }
}

void SparkplugSession::requestBirth()
{
    if (!isBorn()) {
        return;
    }
    if (m_isRebirthSoon) {
        m_isRebirthWanted = true;
        return;
    }
    m_isRebirthSoon = true;
    m_rebirth->set(kRebirthEveryMs);
    bear();
}

void SparkplugSession::bear()
{
    m_state = State::Born;
    m_seq = 0;
    Metric rebirth;
    rebirth.name = kRebirth;
    rebirth.atMs = m_clock.wallMs();
    rebirth.datatype = Datatype::Boolean;
    rebirth.tellsDatatype = true;
    rebirth.value = false;
    QVector<Metric> all{bdSeqMetric(), rebirth};
    all += m_nodeMetrics;
    sendNumbered(m_topics.ofNode("NBIRTH"), all);
    if (isBorn()) {
        Q_EMIT born();
    }
}

void SparkplugSession::tellNode(const QVector<Metric> &changed)
{
    sendNumbered(m_topics.ofNode("NDATA"), changed);
}

void SparkplugSession::bearDevice(const QString &device, const QVector<Metric> &all)
{
    sendNumbered(m_topics.ofDevice("DBIRTH", device), all);
}

void SparkplugSession::tellDevice(const QString &device, const QVector<Metric> &changed)
{
    sendNumbered(m_topics.ofDevice("DDATA", device), changed);
}

void SparkplugSession::killDevice(const QString &device)
{
    sendNumbered(m_topics.ofDevice("DDEATH", device), {});
}

void SparkplugSession::sendNumbered(const QString &topic, const QVector<Metric> &metrics)
{
    if (!isBorn()) {
        return;
    }
    MqttMessage message;
    message.topic = topic;
    message.qos = 0;
    message.payload = encodePayload({m_clock.wallMs(), m_seq, metrics});
    m_seq = (m_seq + 1) % kNumbers;
    // A number that is missing would be taken for a loss by hosts, and rightly.
    if (m_connection.publish(message) == 0 && isBorn()) {
        end();
        Q_EMIT failed(QLatin1String("a message could not be sent"));
    }
}

int SparkplugSession::mark()
{
    if (!isBorn()) {
        return 0;
    }
    MqttMessage message;
    message.topic = m_topics.marker();
    message.qos = 1;
    const int token = m_connection.publish(message);
    if (token != 0) {
        if (m_marks.isEmpty()) {
            m_silence->set(kLongestSilenceMs);
        }
        m_marks.insert(token);
    } else if (isBorn()) {
        end();
        Q_EMIT failed(QLatin1String("a message could not be sent"));
    }
    return token;
}

void SparkplugSession::handlePublished(int token)
{
    if (m_marks.remove(token)) {
        if (m_marks.isEmpty()) {
            m_silence->cancel();
        } else {
            m_silence->set(kLongestSilenceMs);
        }
        Q_EMIT marked(token);
    }
}

} // namespace cnet::gateway
