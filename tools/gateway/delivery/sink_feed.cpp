#include "gateway/delivery/sink_feed.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace cnet::gateway {

namespace {

// In whole units, and never more than there is. In the first minute nobody knows.
QString roomText(const LedgerState &state)
{
    if (!state.hoursLeft) {
        return QString();
    }
    const double hours = *state.hoursLeft;
    const QString text = QLatin1String("; the ledger has room for %1 %2");
    if (hours >= 72) {
        return text.arg(std::floor(hours / 24)).arg(QLatin1String("days"));
    }
    return hours >= 2 ? text.arg(std::floor(hours)).arg(QLatin1String("hours"))
                      : text.arg(std::floor(hours * 60)).arg(QLatin1String("minutes"));
}

} // namespace

SinkFeed::SinkFeed(const QString &name, std::unique_ptr<Sink> sink, Ledger &ledger, Clock &clock,
                   const Say &say)
    : m_name(name)
    , m_sink(std::move(sink))
    , m_ledger(ledger)
    , m_clock(clock)
    , m_say(say)
    , m_trouble(QLatin1String("sink ") + name, say)
    , m_readTrouble(QLatin1String("ledger, for sink ") + name, say)
    , m_next(clock.makeAlarm())
    , m_again(clock.makeAlarm())
    , m_limit(clock.makeAlarm())
{
    connect(m_sink.get(), &Sink::ready, this, &SinkFeed::handleReady);
    connect(m_sink.get(), &Sink::safe, this, &SinkFeed::handleSafe);
    connect(m_sink.get(), &Sink::failed, this, &SinkFeed::handleFailure);
    connect(m_sink.get(), &Sink::noticed, this, [this](const QString &text) {
        m_say(QString::fromLatin1("sink %1: %2").arg(m_name, text));
    });
    connect(m_sink.get(), &Sink::asked, this, [this](const WriteRequest &request) {
        WriteRequest own = request;
        own.reply.sink = m_name;
        Q_EMIT asked(own);
    });
    connect(m_sink.get(), &Sink::ended, this, &SinkFeed::handleEnded);
    connect(m_next.get(), &Alarm::fired, this, &SinkFeed::takeTurn);
    connect(m_again.get(), &Alarm::fired, this, &SinkFeed::begin);
    connect(m_limit.get(), &Alarm::fired, this, &SinkFeed::handleLimit);
}

void SinkFeed::start()
{
    begin();
}

void SinkFeed::begin()
{
    m_sink->begin(m_ledger.identity());
}

void SinkFeed::wake()
{
    m_next->set(0);
}

void SinkFeed::handleReady()
{
    m_isReady = true;
    // Whatever was on its way is not known to have arrived.
    m_waiting.clear();
    const qint64 confirmed = m_ledger.confirmed(m_name);
    m_backlogEnd = m_ledger.last();
    m_backlog = {confirmed, confirmed};
    m_live = {m_backlogEnd, m_backlogEnd};
    m_liveInARow = 0;
    m_isCaughtUp = false;
    m_ledger.noteAhead(m_name, BatchRange());
    if (m_ledger.waitingBatches(m_name) == 0) {
        m_trouble.fine(); // there is nothing else that could show it
    }
    wake();
}

QString SinkFeed::trouble() const
{
    if (m_readTrouble.isThere()) {
        return QLatin1String("ledger: ") + m_readTrouble.reason();
    }
    return m_isReady && m_trouble.isThere()
               ? QLatin1String("ready, nothing confirmed yet; before: ") + m_trouble.reason()
               : m_trouble.reason();
}

void SinkFeed::takeTurn()
{
    const bool isSending = m_phase == Phase::HandsOn || m_phase == Phase::Waits;
    if (!handOn() && isSending && m_isReady && m_waiting.isEmpty()) {
        sayGoodbye();
    }
}

// One window a turn of the event loop: a long backlog does not keep new changes from the ledger.
bool SinkFeed::handOn()
{
    const int room = m_sink->window() - static_cast<int>(m_waiting.size());
    const bool mayHandOn = m_phase == Phase::Stays || m_phase == Phase::HandsOn;
    if (!m_isReady || room <= 0 || !mayHandOn) {
        return false;
    }
    const bool hadBacklog = hasBacklog();
    const QVector<SinkBatch> batches = chosen(room);
    for (const SinkBatch &batch : batches) {
        m_waiting.append({batch.number, batch.age});
    }
    const bool isBacklogOver = hadBacklog && !hasBacklog();
    if (isBacklogOver) {
        confirm();
    }
    if (!batches.isEmpty() || isBacklogOver) {
        // What had no turn until now may have one.
        wake();
    }
    if (!batches.isEmpty()) {
        m_sink->take(batches);
    }
    sayCaughtUp();
    return !batches.isEmpty() || isBacklogOver;
}

// A backlog does not take the last places: what comes live is handed on at once.
int SinkFeed::backlogPlaces() const
{
    const int window = m_sink->window();
    return m_sink->order() == Sink::Order::OfLedger ? window : window - window / 4;
}

void SinkFeed::sayCaughtUp()
{
    if (m_isReady && !hasBacklog() && !std::exchange(m_isCaughtUp, true)) {
        m_sink->caughtUp();
    }
}

// Whose turn it is, as long as there is room.
QVector<SinkBatch::Age> SinkFeed::turns(int room, int live) const
{
    const int liveTurns = 3;
    int old = backlogPlaces();
    for (const Handed &handed : m_waiting) {
        old -= handed.age == SinkBatch::Age::Backlog ? 1 : 0;
    }
    QVector<SinkBatch::Age> turns;
    for (int row = m_liveInARow; turns.size() < room;) {
        const bool isOldDue = hasBacklog() && old > 0 && (live == 0 || row >= liveTurns);
        if (!isOldDue && live == 0) {
            break;
        }
        turns.append(isOldDue ? SinkBatch::Age::Backlog : SinkBatch::Age::Live);
        row = isOldDue ? 0 : row + 1;
        --(isOldDue ? old : live);
    }
    return turns;
}

// What cannot be read just now is not gone: it comes later, or a bound takes it and counts it.
QVector<LedgerBatch> SinkFeed::readBehind(qint64 number, int most, qint64 upTo)
{
    const QVector<LedgerBatch> found = m_ledger.after(number, most, upTo);
    const qint64 there = std::min(upTo, m_ledger.last()) - std::max(number, m_ledger.lastGone());
    if (found.size() < std::min<qint64>(most, there)) {
        m_next->set(m_readTrouble.failed(QLatin1String("its file cannot be read")));
    } else if (!found.isEmpty()) {
        m_readTrouble.fine();
    }
    return found;
}

QVector<SinkBatch> SinkFeed::chosen(int room)
{
    const bool isLiveDue = !hasBacklog() || m_sink->order() == Sink::Order::LiveFirst;
    const QVector<LedgerBatch> live =
        isLiveDue ? readBehind(m_live.handed, room, m_last) : QVector<LedgerBatch>();
    const QVector<SinkBatch::Age> order = turns(room, static_cast<int>(live.size()));
    const auto oldTurns = static_cast<int>(order.count(SinkBatch::Age::Backlog));
    const QVector<LedgerBatch> old = oldTurns > 0
                                         ? readBehind(m_backlog.handed, oldTurns, m_backlogEnd)
                                         : QVector<LedgerBatch>();
    QVector<SinkBatch> batches;
    bool isLoss = false; // numbers have no gaps unless the bounds of the ledger took some
    for (int turn = 0, newer = 0, older = 0; turn < order.size(); ++turn) {
        const bool isLive = order.at(turn) == SinkBatch::Age::Live;
        if (!isLive && older == old.size()) {
            continue;
        }
        batches.append(opened(isLive ? live.at(newer++) : old.at(older++), order.at(turn)));
        Progress &progress = isLive ? m_live : m_backlog;
        isLoss = isLoss || batches.last().number != progress.handed + 1 ||
                 batches.last().changes.isEmpty();
        progress.handed = batches.last().number;
        m_liveInARow = isLive ? m_liveInARow + 1 : 0;
    }
    if (hasBacklog() && m_ledger.lastGone() >= m_backlogEnd) {
        isLoss = true; // the bounds took the rest
        m_backlog.handed = m_backlogEnd;
    }
    if (isLoss) {
        m_sink->missed();
    }
    return batches;
}

SinkBatch SinkFeed::opened(const LedgerBatch &batch, SinkBatch::Age age)
{
    m_handedValues += batch.values;
    const auto changes = m_reader.read(batch.body);
    if (!changes) {
        m_say.warn(
            QString::fromLatin1("sink %1: batch %2 of the ledger is damaged; its %3 changes are "
                                "lost")
                .arg(m_name)
                .arg(batch.number)
                .arg(batch.values));
    }
    return {batch.number, changes.value_or(QVector<Change>()), age,
            batch.number > m_ledger.lastBefore()};
}

void SinkFeed::handleSafe(qint64 number)
{
    const auto isIt = [number](const Handed &handed) { return handed.number == number; };
    const auto it = std::find_if(m_waiting.begin(), m_waiting.end(), isIt);
    if (it == m_waiting.end()) {
        return;
    }
    m_trouble.fine();
    for (auto done = m_waiting.begin(); done <= it; ++done) {
        (done->age == SinkBatch::Age::Live ? m_live : m_backlog).safe = done->number;
    }
    m_waiting.erase(m_waiting.begin(), it + 1);
    confirm();
    wake();
}

// Live batches wait in the ledger for the backlog that they overtook: it knows one number only.
void SinkFeed::confirm()
{
    const bool isOldWaiting =
        std::any_of(m_waiting.begin(), m_waiting.end(),
                    [](const Handed &handed) { return handed.age == SinkBatch::Age::Backlog; });
    if (!hasBacklog() && !isOldWaiting) {
        m_backlog.safe = m_backlogEnd;
    }
    m_ledger.noteAhead(m_name, {m_backlogEnd, m_live.safe});
    m_ledger.confirm(m_name, m_backlog.safe < m_backlogEnd ? m_backlog.safe : m_live.safe);
}

void SinkFeed::handleFailure(const QString &reason)
{
    m_isReady = false;
    m_waiting.clear();
    const int pauseMs = m_trouble.failed(reason, roomText(m_ledger.state()));
    if (isLeaving()) {
        sayGoodbye();
    } else {
        m_again->set(pauseMs);
    }
}

void SinkFeed::leave(int limitMs)
{
    if (isLeaving()) {
        return;
    }
    m_phase = Phase::HandsOn;
    m_last = m_ledger.last();
    m_leftMs = m_clock.nowMs() + limitMs;
    m_limit->set(limitMs / 2);
    m_again->cancel();
    if (m_isReady) {
        wake();
    } else {
        sayGoodbye();
    }
}

void SinkFeed::sayGoodbye()
{
    if (m_phase != Phase::HandsOn && m_phase != Phase::Waits) {
        return;
    }
    m_phase = Phase::SaysGoodbye;
    m_next->cancel();
    m_limit->set(static_cast<int>(std::max<qint64>(0, m_leftMs - m_clock.nowMs())));
    m_sink->end();
}

void SinkFeed::handleLimit()
{
    if (m_phase == Phase::HandsOn) {
        m_phase = Phase::Waits;
        m_limit->set(static_cast<int>(std::max<qint64>(0, m_leftMs - m_clock.nowMs())));
        wake();
    } else {
        handleEnded();
    }
}

void SinkFeed::handleEnded()
{
    if (isLeaving() && !hasLeft()) {
        m_phase = Phase::Left;
        m_limit->cancel();
        m_next->cancel();
        Q_EMIT left();
    }
}

} // namespace cnet::gateway
