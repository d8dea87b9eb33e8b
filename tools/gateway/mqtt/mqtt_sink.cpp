#include "gateway/mqtt/mqtt_sink.h"

#include "gateway/mqtt/command_reader.h"
#include "gateway/mqtt/value_payload.h"

#include <algorithm>
#include <utility>

namespace cnet::gateway {

namespace {

// One is under way while the next ones wait: as many as the messages in flight may be of.
constexpr int kBatchesAtOnce = 8;
// Answers behind so many messages are not waited for by anybody: somebody floods the gateway.
constexpr int kMostAside = 1000;
constexpr int kMsPerS = 1000;
// Of what cannot be read, in the audit log.
constexpr int kMostShown = 200;

} // namespace

MqttSink::MqttSink(const MqttSettings &settings, std::unique_ptr<MqttConnection> connection,
                   Clock &clock)
    : m_settings(settings)
    , m_clock(clock)
    , m_connection(std::move(connection))
    , m_silence(clock.makeAlarm())
    , m_messages(settings.topic, settings.isRetained)
    , m_board(settings.status)
    , m_gone(settings.retainedFile, *m_connection, m_board, clock)
{
    connect(m_connection.get(), &MqttConnection::connected, this, &MqttSink::handleConnected);
    connect(m_connection.get(), &MqttConnection::lost, this, &MqttSink::handleLost);
    connect(m_connection.get(), &MqttConnection::published, this, &MqttSink::handlePublished);
    connect(m_connection.get(), &MqttConnection::received, this, &MqttSink::handleReceived);
    connect(m_connection.get(), &MqttConnection::closed, this, [this] {
        if (m_isEnding) {
            Q_EMIT ended();
        }
    });
    connect(m_silence.get(), &Alarm::fired, this, [this] {
        fail(QString::fromLatin1("the broker has confirmed nothing for %1 seconds")
                 .arg(silenceMs() / kMsPerS));
    });
}

// Whoever subscribes later finds it offline, whether it was lost or has ended.
MqttSink::~MqttSink()
{
    m_connection->disconnect(this);
    if (m_isConnected) {
        m_connection->publish(m_board.will());
        m_connection->close();
    }
}

// A second later the next broker is tried, so that it has the news a keep-alive after the silence
// began.
int MqttSink::silenceMs() const
{
    return (m_settings.connection.keepAliveS - 1) * kMsPerS;
}

int MqttSink::window() const
{
    return kBatchesAtOnce;
}

void MqttSink::begin(const QString & /*ledger*/)
{
    m_broker = m_firstBroker;
    m_reasons.clear();
    openNext();
}

void MqttSink::openNext()
{
    m_connection->open(m_broker, m_board.will());
}

void MqttSink::handleConnected()
{
    m_isConnected = true;
    m_reasons.clear();
    const MqttBroker &broker = m_settings.connection.brokers.at(m_broker);
    const QString place =
        QString::fromLatin1("%1:%2").arg(broker.host, QString::number(broker.port));
    // How the lines do, and did, comes first: it counts from the moment the gateway is online.
    notice(m_gone.begin(place));
    const QVector<MqttMessage> all = m_board.all();
    QVector<RetainedTopic> topics; // written down together, and not with a wait for the disk each
    for (const MqttMessage &message : all) {
        topics.append({message.topic, RetainedTopic::Kind::Status});
    }
    notice(m_gone.note(topics));
    for (const MqttMessage &message : all) {
        sendRetained(message, RetainedTopic::Kind::Status);
    }
    sendRetained(m_board.birth(m_clock.wallMs()), RetainedTopic::Kind::Gateway);
    if (m_isConnected && m_settings.commands) {
        m_connection->subscribe({m_settings.commands->filter()}, 1);
    }
    if (m_isConnected) {
        Q_EMIT ready();
    }
}

void MqttSink::handleLost(const QString &reason)
{
    if (m_isConnected) {
        fail(reason);
        return;
    }
    const auto brokers = static_cast<int>(m_settings.connection.brokers.size());
    m_reasons.append(reason);
    if (m_reasons.size() < brokers) {
        m_broker = (m_broker + 1) % brokers;
        openNext();
        return;
    }
    fail(m_reasons.join(QLatin1String("; ")));
}

void MqttSink::fail(const QString &reason)
{
    m_firstBroker = 0;
    if (m_isConnected) {
        // Who is with it still is to hear of it as soon as it does anything again.
        m_connection->abandon();
        // It may take connections all the same, and answer nothing.
        m_firstBroker = (m_broker + 1) % static_cast<int>(m_settings.connection.brokers.size());
    }
    m_isConnected = false;
    m_silence->cancel();
    m_waiting.clear();
    m_next.clear();
    m_nextIndex = 0;
    m_sent.clear();
    m_batchOfToken.clear();
    m_aside = 0;
    m_gone.stop();
    if (m_isEnding) {
        Q_EMIT ended();
    } else {
        Q_EMIT failed(reason);
    }
}

void MqttSink::take(const QVector<SinkBatch> &batches)
{
    for (const SinkBatch &batch : batches) {
        m_waiting.push_back(batch);
    }
    sendMore();
}

bool MqttSink::nextBatch()
{
    if (m_waiting.empty()) {
        return false;
    }
    m_next = m_messages.of(m_waiting.front());
    QVector<RetainedTopic> topics;
    for (const MqttMessage &message : qAsConst(m_next)) {
        if (message.isRetained) {
            topics.append({message.topic, RetainedTopic::Kind::Value});
        }
    }
    notice(m_gone.note(topics));
    m_nextIndex = 0;
    m_sent.push_back({m_waiting.front().number, static_cast<int>(m_next.size())});
    m_waiting.pop_front();
    return true;
}

// Confirmations may come while it sends.
void MqttSink::sendMore()
{
    if (m_isSending) {
        return;
    }
    m_isSending = true;
    while (m_isConnected && m_batchOfToken.size() < m_settings.inFlight) {
        if (m_nextIndex == m_next.size()) {
            if (!nextBatch()) {
                break;
            }
            continue;
        }
        const MqttMessage &message = m_next.at(m_nextIndex);
        const int token = m_connection->publish(message);
        if (token == 0) {
            if (m_isConnected) {
                fail(QString::fromLatin1("a message of %1 bytes cannot be sent")
                         .arg(message.payload.size()));
            }
            break;
        }
        ++m_nextIndex;
        if (m_batchOfToken.isEmpty()) {
            m_silence->set(silenceMs());
        }
        m_batchOfToken.insert(token, m_sent.back().number);
    }
    m_isSending = false;
    confirm();
}

void MqttSink::handlePublished(int token)
{
    const auto found = m_batchOfToken.constFind(token);
    if (found == m_batchOfToken.constEnd()) {
        m_aside -= m_gone.handlePublished(token) || m_aside == 0 ? 0 : 1;
        closeWhenQuiet();
        return;
    }
    const qint64 number = *found;
    m_batchOfToken.erase(found);
    m_silence->set(silenceMs());
    const auto sent = std::find_if(m_sent.begin(), m_sent.end(),
                                   [number](const Sent &own) { return own.number == number; });
    --sent->open;
    sendMore();
    closeWhenQuiet();
}

void MqttSink::confirm()
{
    if (m_batchOfToken.isEmpty()) {
        m_silence->cancel();
    }
    qint64 last = 0;
    // The open ones of a batch count those that are to be sent yet.
    while (!m_sent.empty() && m_sent.front().open == 0) {
        last = m_sent.front().number;
        m_sent.pop_front();
    }
    if (last > 0) {
        Q_EMIT safe(last);
    }
}

// In front of what waits, and whatever is in flight: it is little.
void MqttSink::sendAside(const MqttMessage &message)
{
    if (m_isConnected && m_connection->publish(message) > 0) {
        ++m_aside;
    }
}

void MqttSink::sendRetained(const MqttMessage &message, RetainedTopic::Kind kind)
{
    if (m_isConnected) {
        notice(m_gone.note({{message.topic, kind}}));
        sendAside(message);
    }
}

// Values are worth more than what is known of them later: without a disk it goes on.
void MqttSink::notice(const QString &wrong)
{
    if (!wrong.isEmpty()) {
        Q_EMIT noticed(wrong);
    }
}

void MqttSink::tell(const LineStatus &status)
{
    sendRetained(m_board.tell(status), RetainedTopic::Kind::Status);
}

void MqttSink::watch(const QVector<TopicNames> &names)
{
    QSet<QString> topics{m_board.topic()};
    for (const TopicNames &own : names) {
        if (own.tag.isEmpty()) {
            topics.insert(m_board.topic(own));
        } else if (m_settings.isRetained) {
            topics.insert(m_settings.topic.topic(own));
        }
    }
    m_board.keepOnly(names);
    m_gone.setCurrent(topics);
}

void MqttSink::end()
{
    m_isEnding = true;
    if (m_isConnected) {
        sendAside(m_board.will());
        closeWhenQuiet();
    } else {
        m_connection->close();
    }
}

// What the broker has confirmed and is not read is confirmed for nobody.
void MqttSink::closeWhenQuiet()
{
    if (m_isEnding && m_isConnected && m_batchOfToken.isEmpty() && m_aside == 0 &&
        !m_gone.isBusy()) {
        m_isConnected = false;
        m_connection->close();
    }
}

void MqttSink::handleReceived(const MqttMessage &message)
{
    const auto command =
        m_settings.commands ? readCommand(*m_settings.commands, message) : std::nullopt;
    if (!command) {
        return;
    }
    WriteRequest request = command->request;
    request.fault = command->fault;
    if (!request.fault.isEmpty()) {
        request.value = QString::fromUtf8(message.payload.left(kMostShown)).trimmed();
    }
    Q_EMIT asked(request);
}

void MqttSink::answer(const WriteAnswer &answer)
{
    MqttMessage message = jsonMessage(answer.reply.topic, answerPayload(answer));
    // Whoever asks for an answer on a topic that the broker keeps from us must not cost the
    // connection.
    message.mayBeRefused = true;
    const bool isFilter =
        message.topic.contains(QLatin1Char('+')) || message.topic.contains(QLatin1Char('#'));
    // Else a request could end in a status, or be answered for ever.
    if (message.topic.isEmpty() || isFilter || isOwnTopic(message.topic)) {
        message.topic = m_settings.answers.topic({answer.line, QString(), answer.tag});
    }
    message.correlation = answer.reply.correlation;
    if (m_aside < kMostAside) {
        sendAside(message);
    }
}

bool MqttSink::isOwnTopic(const QString &topic) const
{
    const QString status = m_settings.status.topic(TopicNames());
    return m_settings.topic.read(topic) ||
           (m_settings.commands && m_settings.commands->read(topic)) || topic == status ||
           topic.startsWith(status + QLatin1Char('/'));
}

} // namespace cnet::gateway
