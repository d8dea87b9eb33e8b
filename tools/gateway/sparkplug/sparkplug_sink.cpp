#include "gateway/sparkplug/sparkplug_sink.h"

#include <QRandomGenerator>

#include <utility>

namespace cnet::gateway {

namespace {

constexpr int kBatchesAtOnce = 8;
// Of births in a turn of the event loop: some milliseconds.
constexpr int kMetricsOfTurn = 1000;

QString answerText(const WriteAnswer &answer)
{
    const QString more = answer.reason.isEmpty() ? answer.isNow : answer.reason;
    return QString::fromLatin1("%1 %2: %3%4")
        .arg(answer.line, answer.tag, outcomeText(answer.outcome),
             more.isEmpty() ? more : QLatin1String(", ") + more);
}

} // namespace

SparkplugSink::SparkplugSink(const SparkplugSettings &settings,
                             std::unique_ptr<MqttConnection> connection, Clock &clock)
    : m_settings(settings)
    , m_clock(clock)
    , m_connection(std::move(connection))
    , m_session(settings, *m_connection, clock)
    , m_devices(m_model, m_session, clock)
    , m_turn(clock.makeAlarm())
    , m_spread(clock.makeAlarm())
{
    m_answer.name = QLatin1String("Commands/Answer");
    m_answer.datatype = Datatype::String;
    setAnswerMetric(QString());
    connect(&m_session, &SparkplugSession::born, this, &SparkplugSink::handleBorn);
    connect(&m_session, &SparkplugSession::failed, this, &SparkplugSink::handleFailure);
    connect(&m_session, &SparkplugSession::marked, this, &SparkplugSink::handleMarked);
    connect(&m_session, &SparkplugSession::commanded, this, &SparkplugSink::handleCommand);
    connect(m_turn.get(), &Alarm::fired, this, &SparkplugSink::work);
    connect(m_spread.get(), &Alarm::fired, &m_session, &SparkplugSession::begin);
}

// What it was handed goes, and nobody hears of it any more.
SparkplugSink::~SparkplugSink()
{
    blockSignals(true);
    while (hasWork()) {
        work();
    }
    m_session.end();
}

// The broker is to have read all of it, and the node's own death, before the connection ends.
void SparkplugSink::end()
{
    connect(m_connection.get(), &MqttConnection::closed, this, &Sink::ended);
    m_session.end();
    m_connection->close();
}

int SparkplugSink::window() const
{
    return kBatchesAtOnce;
}

void SparkplugSink::begin(const QString &ledger)
{
    if (ledger != m_ledger) {
        m_ledger = ledger;
        m_model.forgetBatches();
    }
    m_isBegun = true;
    if (m_session.isBorn()) {
        goOn();
    } else if (m_wasAway && m_session.isOff() && m_settings.spreadMs > 0) {
        // All gateways of a broker that comes back would be born at once.
        m_spread->set(QRandomGenerator::global()->bounded(m_settings.spreadMs));
    } else {
        m_session.begin();
    }
}

// After the first birth, or one that a host asked for.
void SparkplugSink::handleBorn()
{
    m_toBear.clear();
    for (int device = 0; device < m_model.devices().size(); ++device) {
        if (m_model.devices().at(device).isBorn) {
            m_toBear.append(device);
        }
    }
    m_model.forgetBirths();
    wantLiving();
    goOn();
}

void SparkplugSink::handleFailure(const QString &reason)
{
    m_isReady = false;
    m_isBegun = false;
    m_wasAway = true;
    m_isCaughtUp = false;
    m_isTurnSet = false;
    m_turn->cancel();
    m_marks.clear();
    m_toBear.clear();
    m_answers.clear();
    m_held.clear();
    m_toTell.clear();
    m_model.forgetBirths();
    m_model.setOutdated();
    Q_EMIT failed(reason);
}

bool SparkplugSink::hasWork() const
{
    return m_session.isBorn() && (!m_toBear.isEmpty() || !m_answers.isEmpty() ||
                                  !m_held.isEmpty() || m_isCaughtUp || !m_toTell.isEmpty());
}

// Data waits for all births, as the rules want it.
void SparkplugSink::work()
{
    int most = kMetricsOfTurn;
    while (most > 0 && m_session.isBorn() && !m_toBear.isEmpty()) {
        most -= m_devices.bear(m_toBear.takeFirst());
    }
    if (m_session.isBorn() && m_toBear.isEmpty()) {
        if (m_isBegun && !m_isReady) {
            m_isReady = true;
            Q_EMIT ready();
        }
        tellMore(most);
    }
    m_isTurnSet = hasWork();
    if (m_isTurnSet) {
        m_turn->set(0);
    }
}

void SparkplugSink::goOn()
{
    if (!m_isTurnSet) {
        work();
    }
}

void SparkplugSink::tellMore(int most)
{
    for (const Metric &answer : std::exchange(m_answers, {})) {
        m_session.tellNode({answer});
    }
    if (!m_held.isEmpty()) {
        tellBatch(m_held.takeFirst());
    }
    if (m_held.isEmpty() && m_session.isBorn() && std::exchange(m_isCaughtUp, false)) {
        m_model.setUpToDate();
        wantAllTold();
    }
    while (most > 0 && m_session.isBorn() && !m_toTell.isEmpty()) {
        most -= m_devices.tellUntold(m_toTell.takeFirst());
    }
}

void SparkplugSink::wantLiving()
{
    for (int device = 0; device < m_model.devices().size(); ++device) {
        if (!m_model.devices().at(device).isBorn && !m_model.isSilent(device) &&
            !m_model.isLost(device) && !m_toBear.contains(device)) {
            m_toBear.append(device);
        }
    }
}

void SparkplugSink::wantAllTold()
{
    m_toTell.clear();
    for (int device = 0; device < m_model.devices().size(); ++device) {
        m_toTell.append(device);
    }
}

void SparkplugSink::take(const QVector<SinkBatch> &batches)
{
    m_held += batches;
    goOn();
}

void SparkplugSink::caughtUp()
{
    m_isCaughtUp = true;
    goOn();
}

// Between those that it has and those that come.
void SparkplugSink::missed()
{
    m_held.append(SinkBatch());
    goOn();
}

void SparkplugSink::tellBatch(const SinkBatch &batch)
{
    if (batch.changes.isEmpty()) {
        m_model.distrust(m_clock.wallMs());
        wantAllTold();
    }
    m_devices.tell(batch);
    const int token = batch.number > 0 ? m_session.mark() : 0;
    if (token != 0) {
        m_marks.append({token, batch.number});
    }
}

// The broker confirms in the order in which it was sent.
void SparkplugSink::handleMarked(int token)
{
    while (!m_marks.isEmpty()) {
        const Mark mark = m_marks.takeFirst();
        Q_EMIT safe(mark.batch);
        if (mark.token == token) {
            return;
        }
    }
}

void SparkplugSink::tell(const LineStatus &status)
{
    m_model.tell(status);
    if (status.state == LineStatus::State::Good && m_session.isBorn()) {
        wantLiving();
        goOn();
    }
    m_devices.doomLost();
}

void SparkplugSink::handleCommand(const QString &device,
                                  const std::optional<QVector<CameMetric>> &metrics,
                                  bool isRetained)
{
    if (!m_settings.takesCommands) {
        return;
    }
    for (const CameMetric &wanted : metrics.value_or(QVector<CameMetric>(1))) {
        WriteRequest request = m_model.requestOf(device, wanted);
        if (!metrics) {
            request.tag.clear();
            request.fault = QLatin1String("what came is no Sparkplug message, or too long");
        }
        request.arrival =
            isRetained ? WriteRequest::Arrival::Retained : WriteRequest::Arrival::Live;
        Q_EMIT asked(request);
    }
}

// Hosts see the value itself in the data; this is for who wonders why it did not change.
void SparkplugSink::answer(const WriteAnswer &answer)
{
    setAnswerMetric(answerText(answer));
    Metric changed = m_answer;
    changed.tellsDatatype = false;
    m_answers.append(changed);
    goOn();
}

void SparkplugSink::setAnswerMetric(const QString &text)
{
    m_answer.atMs = m_clock.wallMs();
    m_answer.value = text;
    m_answer.tellsDatatype = true;
    if (m_settings.takesCommands) {
        m_session.setNodeMetrics({m_answer});
    }
}

} // namespace cnet::gateway
