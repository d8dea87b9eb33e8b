#include "gateway/delivery/recorder.h"

#include "gateway/delivery/make_sink.h"

#include <algorithm>
#include <set>
#include <utility>

namespace cnet::gateway {

namespace {

// For the last words of sinks that a changed configuration does not name any more, and of all at
// the end. Whoever waits for that has more to do.
constexpr int kLeaveMs = 10000;
constexpr int kEndMs = 2000;

} // namespace

Recorder::Recorder(const GatewayConfig &config, Inbox &inbox, Clock &clock, Say say)
    : m_config(config.ledger)
    , m_wanted(config.sinks)
    , m_inbox(inbox)
    , m_clock(clock)
    , m_say(std::move(say))
    , m_ledger(clock)
    , m_trouble(QLatin1String("ledger"), m_say)
    , m_again(clock.makeAlarm())
    , m_settles(clock.makeAlarm())
{
    connect(m_again.get(), &Alarm::fired, this, &Recorder::tryAgain);
    connect(m_settles.get(), &Alarm::fired, this, &Recorder::settle);
}

StoreError Recorder::start()
{
    StoreError failed = open();
    if (failed.kind != StoreError::Kind::Full) {
        return failed;
    }
    // The lines can be watched and asked for all the same, and a disk is full for a while only.
    m_again->set(m_trouble.failed(
        QString::fromLatin1("cannot open %1: %2").arg(m_config.path, failed.text)));
    return StoreError();
}

StoreError Recorder::open()
{
    QStringList names;
    for (const SinkConfig &sink : qAsConst(m_wanted)) {
        names.append(sink.name);
    }
    StoreError failed = m_ledger.open(m_config.path, m_config.durability, m_config.bounds, names);
    if (failed.isNone()) {
        m_isOpen = true;
        beginSinks(true);
    }
    return failed;
}

void Recorder::tryAgain()
{
    const StoreError failed = m_isOpen ? StoreError() : open();
    if (!failed.isNone()) {
        m_again->set(m_trouble.failed(
            QString::fromLatin1("cannot open %1: %2").arg(m_config.path, failed.text)));
    } else {
        store();
    }
}

void Recorder::beginSinks(bool isFirst)
{
    for (const SinkConfig &sink : qAsConst(m_wanted)) {
        const bool isThere =
            std::any_of(m_sinks.begin(), m_sinks.end(),
                        [&sink](const OwnSink &own) { return own.config.name == sink.name; });
        if (isThere) {
            continue;
        }
        if (!isFirst) {
            m_say(QString::fromLatin1("sink %1: begins").arg(sink.name));
        }
        beginSink(sink);
    }
}

void Recorder::beginSink(const SinkConfig &sink)
{
    m_sinks.push_back({sink, std::make_unique<SinkFeed>(sink.name, makeSink(sink.settings, m_clock),
                                                        m_ledger, m_clock, m_say)});
    SinkFeed &feed = *m_sinks.back().feed;
    connect(&feed, &SinkFeed::asked, this, &Recorder::asked);
    connect(&feed, &SinkFeed::left, this, [this] { m_settles->set(0); });
    for (const auto &[whose, status] : m_statuses) {
        feed.tell(status);
    }
    if (m_isWatching) {
        feed.watch(m_watched);
    }
    feed.start();
}

bool Recorder::isWanted(const SinkConfig &sink) const
{
    return std::any_of(m_wanted.cbegin(), m_wanted.cend(), [&sink](const SinkConfig &wanted) {
        return wanted.name == sink.name && wanted.written == sink.written;
    });
}

void Recorder::reload(const GatewayConfig &config)
{
    m_wanted = config.sinks;
    if (!m_isOpen) {
        m_config = config.ledger;
        return;
    }
    sayFixed(config.ledger);
    m_config.bounds = config.ledger.bounds;
    m_ledger.setBounds(m_config.bounds);
    // What is on its way to a sink that ends belongs to it still.
    commit();
    for (const OwnSink &own : m_sinks) {
        if (!isWanted(own.config)) {
            own.feed->leave(kLeaveMs);
        }
    }
    settle();
}

// After each reload, and when a sink has left.
void Recorder::settle()
{
    for (auto own = m_sinks.begin(); own != m_sinks.end();) {
        if (!own->feed->hasLeft()) {
            ++own;
            continue;
        }
        if (!isWanted(own->config)) {
            m_say(QString::fromLatin1("sink %1: ends").arg(own->config.name));
        }
        own = m_sinks.erase(own);
    }
    QStringList names;
    for (const SinkConfig &sink : qAsConst(m_wanted)) {
        names.append(sink.name);
    }
    for (const OwnSink &own : m_sinks) {
        names.append(own.config.name);
    }
    if (m_isOpen) {
        m_ledger.setSinks(names);
    }
    if (!m_isFinishing) {
        beginSinks(false);
    } else if (m_sinks.empty()) {
        if (m_isOpen && m_lost == 0) {
            store(); // how far they are
        }
        Q_EMIT finished(m_lost);
    }
}

void Recorder::sayFixed(const LedgerConfig &ledger)
{
    if (ledger.path != m_config.path) {
        m_say(QString::fromLatin1("ledger: stays in %1 until the next start").arg(m_config.path));
    }
    if (ledger.durability != m_config.durability) {
        m_say(QLatin1String("ledger: another durability counts from the next start on"));
    }
}

void Recorder::commit()
{
    // What comes while the ledger has trouble waits for the next try.
    if (m_isOpen && !m_trouble.isThere() && !m_inbox.isEmpty()) {
        store();
    }
}

void Recorder::tell(const LineStatus &status)
{
    m_statuses[{status.line, status.station.value_or(-1)}] = status;
    for (const OwnSink &own : m_sinks) {
        own.feed->tell(status);
    }
}

void Recorder::watch(const QVector<TopicNames> &names)
{
    m_watched = names;
    m_isWatching = true;
    std::set<std::pair<QString, int>> there;
    for (const TopicNames &own : names) {
        there.insert({own.line, own.station.isEmpty() ? -1 : own.station.toInt()});
    }
    for (auto known = m_statuses.begin(); known != m_statuses.end();) {
        known = there.count(known->first) > 0 ? std::next(known) : m_statuses.erase(known);
    }
    for (const OwnSink &own : m_sinks) {
        own.feed->watch(names);
    }
}

bool Recorder::store()
{
    QVector<LedgerBatch> batches = m_inbox.all();
    const StoreError failed = m_ledger.commit(batches);
    if (!failed.isNone()) {
        m_again->set(m_trouble.failed(
            QString::fromLatin1("cannot store in %1: %2").arg(m_config.path, failed.text)));
        return false;
    }
    m_inbox.removeSeen();
    m_trouble.fine();
    sayDropped();
    for (const OwnSink &own : m_sinks) {
        own.feed->wake();
    }
    return true;
}

void Recorder::sayDropped()
{
    const qint64 dropped = m_inbox.droppedValues();
    if (dropped > m_toldDropped) {
        m_say.warn(
            QString::fromLatin1("ledger: %1 changes did not fit the memory meanwhile and are lost")
                .arg(dropped - m_toldDropped));
        m_toldDropped = dropped;
    }
}

RecorderState Recorder::state()
{
    RecorderState state;
    state.ledger = m_ledger.state();
    state.trouble = m_trouble.reason();
    state.memoryBytes = m_inbox.bytes();
    state.memoryDroppedValues = m_inbox.droppedValues();
    bool isWaiting = false;
    for (const OwnSink &own : m_sinks) {
        SinkState sink;
        sink.name = own.feed->name();
        sink.isReady = own.feed->isReady();
        sink.trouble = own.feed->trouble();
        sink.values = own.feed->handedValues();
        sink.droppedValues = state.ledger.sinks.value(sink.name).droppedValues;
        sink.waitingBatches = m_ledger.waitingBatches(sink.name);
        sink.waitingMs = m_ledger.waitingMs(sink.name);
        state.sinks.append(sink);
        isWaiting = isWaiting || sink.waitingBatches > 0;
    }
    for (int i = 0; !m_isOpen && i < m_wanted.size(); ++i) {
        SinkState sink;
        sink.name = m_wanted.at(i).name;
        sink.trouble = QLatin1String("it waits for the ledger");
        state.sinks.append(sink);
    }
    if (!isWaiting) {
        // What all have goes with the next commit; until then nobody needs to know that it is
        // there.
        state.ledger.batches = 0;
        state.ledger.values = 0;
        state.ledger.oldestAgeMs = 0;
    }
    return state;
}

void Recorder::answer(const WriteAnswer &answer)
{
    for (const OwnSink &own : m_sinks) {
        if (own.feed->name() == answer.reply.sink) {
            own.feed->answer(answer);
        }
    }
}

qint64 Recorder::valuesInMemory() const
{
    qint64 values = 0;
    for (const LedgerBatch &batch : m_inbox.all()) {
        values += batch.values;
    }
    return values;
}

void Recorder::finish()
{
    m_isFinishing = true;
    m_lost = m_isOpen && store() ? 0 : valuesInMemory();
    m_again->cancel();
    for (const OwnSink &own : m_sinks) {
        own.feed->leave(kEndMs);
    }
    m_settles->set(0);
}

} // namespace cnet::gateway
