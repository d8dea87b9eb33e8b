#include "gateway/store/ledger.h"

#include <algorithm>

namespace cnet::gateway {

namespace {

// What a row takes beside its body, roughly: an empty batch is not free.
constexpr qint64 kRowBytes = 32;
constexpr double kHourMs = 60.0 * 60 * 1000;
// Bodies are a second of changes; the pages of what was confirmed go back to the disk bit by bit.
const char kFreePages[] = "PRAGMA incremental_vacuum(256);";

const char kTables[] =
    "CREATE TABLE IF NOT EXISTS batch (number INTEGER PRIMARY KEY AUTOINCREMENT,"
    " at_ms INTEGER NOT NULL, amount INTEGER NOT NULL, body BLOB NOT NULL);"
    "CREATE TABLE IF NOT EXISTS sink (name TEXT PRIMARY KEY, confirmed INTEGER NOT NULL,"
    " dropped INTEGER NOT NULL) WITHOUT ROWID;"
    "CREATE TABLE IF NOT EXISTS setting (name TEXT PRIMARY KEY, value) WITHOUT ROWID;";

qint64 lowestConfirmed(const QMap<QString, LedgerSink> &sinks)
{
    // Without a sink nobody waits for anything, and everything stays until a bound takes it.
    qint64 lowest = 0;
    for (auto it = sinks.begin(); it != sinks.end(); ++it) {
        lowest = it == sinks.begin() ? it->confirmed : std::min(lowest, it->confirmed);
    }
    return lowest;
}

/** Does one step after the other, up to the first that fails. */
template <typename... Steps>
StoreError firstFailure(const Steps &...steps)
{
    StoreError failed;
    (void)(... && (failed = steps()).isNone());
    return failed;
}

qint64 bytesOf(const LedgerBatch &batch)
{
    return batch.body.size() + kRowBytes;
}

} // namespace

StoreError Ledger::open(const QString &path, Database::Durability durability,
                        const LedgerBounds &bounds, const QStringList &sinks, const QString &boot)
{
    m_bounds = bounds;
    m_sinks.clear();
    m_rate.start(m_clock.nowMs());
    StoreError failed = m_database.open(path, durability);
    if (failed.isNone()) {
        failed = prepare(durability, sinks, boot);
    }
    if (failed.isNone() && durability == Database::Durability::Normal) {
        // That its last batches may get lost is not to be lost with them.
        failed = m_database.run("PRAGMA wal_checkpoint(FULL);");
    }
    if (!failed.isNone()) {
        m_database.close();
    }
    m_lastBefore = m_totals.last;
    return failed;
}

StoreError Ledger::prepare(Database::Durability durability, const QStringList &sinks,
                           const QString &boot)
{
    Transaction transaction(m_database);
    return firstFailure([&] { return m_database.run(kTables); }, [&] { return readSettings(); },
                        [&] { return readIdentity(m_database, durability, boot, m_identity); },
                        [&] { return readTotals(); }, [&] { return keepSinks(sinks); },
                        [&] { return keepClock(); }, [&] { return transaction.commit(); });
}

StoreError Ledger::readSettings()
{
    Statement create(m_database, "INSERT OR IGNORE INTO setting VALUES ('age_ms', 0),"
                                 " ('wall_ms', ?)");
    create.bind(1, m_clock.wallMs());
    Statement read(m_database, "SELECT (SELECT value FROM setting WHERE name = 'age_ms'),"
                               " (SELECT value FROM setting WHERE name = 'wall_ms')");
    if (!create.run() || read.step() != Statement::Step::Row) {
        return m_database.error();
    }
    // A wall clock that was set back while nothing ran says that no time has passed.
    const qint64 offMs = std::max<qint64>(0, m_clock.wallMs() - read.number(1));
    m_ageZeroMs = read.number(0) + offMs - m_clock.nowMs();
    return StoreError();
}

StoreError Ledger::keepSinks(const QStringList &sinks)
{
    Statement read(m_database, "SELECT name, confirmed, dropped FROM sink");
    Statement::Step step = read.step();
    for (; step == Statement::Step::Row; step = read.step()) {
        m_sinks[read.text(0)] = {read.number(1), read.number(2), {}};
    }
    if (step == Statement::Step::Failed) {
        return m_database.error();
    }
    setSinks(sinks);
    return keepConfirmations(m_sinks);
}

void Ledger::setSinks(const QStringList &sinks)
{
    QMap<QString, LedgerSink> now;
    for (const QString &name : sinks) {
        now[name] = m_sinks.value(name, {m_totals.last, 0, {}});
    }
    m_sinks = now;
}

StoreError Ledger::commit(QVector<LedgerBatch> &batches)
{
    QMap<QString, LedgerSink> sinks = m_sinks;
    const QVector<LedgerBatch> asked = batches;
    const Totals before = m_totals;
    Transaction transaction(m_database);
    StoreError failed = firstFailure(
        [&] { return insert(batches); }, [&] { return remove(lowestConfirmed(sinks)); },
        [&] { return makeRoom(sinks); }, [&] { return keepConfirmations(sinks); },
        [&] { return keepClock(); }, [&] { return transaction.commit(); });
    if (!failed.isNone()) {
        batches = asked;
        m_totals = before;
        return failed;
    }
    m_sinks = sinks;
    qint64 bytes = 0;
    for (const LedgerBatch &batch : qAsConst(batches)) {
        bytes += bytesOf(batch);
    }
    m_rate.note(m_clock.nowMs(), bytes);
    m_database.run(kFreePages);
    return StoreError();
}

StoreError Ledger::insert(QVector<LedgerBatch> &batches)
{
    Statement insert(m_database, "INSERT INTO batch (at_ms, amount, body) VALUES (?, ?, ?)"
                                 " RETURNING number");
    for (LedgerBatch &batch : batches) {
        insert.bind(1, ageNowMs()).bind(2, batch.values).bind(3, batch.body);
        if (insert.step() != Statement::Step::Row) {
            return m_database.error();
        }
        batch.number = insert.number(0);
        if (!insert.run()) {
            return m_database.error();
        }
        m_totals.last = batch.number;
        if (m_totals.batches == 0) {
            m_totals.oldestAtMs = ageNowMs();
        }
        ++m_totals.batches;
        m_totals.values += batch.values;
        m_totals.bytes += bytesOf(batch);
    }
    return StoreError();
}

qint64 Ledger::lastBeyondBounds()
{
    Statement oldest(m_database, "SELECT number, at_ms, length(body) FROM batch ORDER BY number");
    const qint64 keptSinceMs = ageNowMs() - m_bounds.ageMs;
    qint64 bytes = m_totals.bytes;
    qint64 last = 0;
    while (oldest.step() == Statement::Step::Row &&
           (bytes > m_bounds.bytes || oldest.number(1) < keptSinceMs)) {
        last = oldest.number(0);
        bytes -= oldest.number(2) + kRowBytes;
    }
    return last;
}

StoreError Ledger::makeRoom(QMap<QString, LedgerSink> &sinks)
{
    const qint64 upTo = lastBeyondBounds();
    const StoreError failed = countDropped(upTo, sinks);
    return failed.isNone() ? remove(upTo) : failed;
}

StoreError Ledger::countDropped(qint64 upTo, QMap<QString, LedgerSink> &sinks)
{
    Statement dropped(m_database, "SELECT coalesce(sum(amount), 0) FROM batch"
                                  " WHERE number > ? AND number <= ?"
                                  " AND NOT (number > ? AND number <= ?)");
    for (LedgerSink &sink : sinks) {
        dropped.bind(1, sink.confirmed).bind(2, upTo);
        dropped.bind(3, sink.ahead.after).bind(4, sink.ahead.upTo);
        if (dropped.step() != Statement::Step::Row) {
            return m_database.error();
        }
        sink.droppedValues += dropped.number(0);
        if (!dropped.run()) {
            return m_database.error();
        }
    }
    return StoreError();
}

StoreError Ledger::remove(qint64 upTo)
{
    Statement going(m_database, "SELECT count(*), coalesce(sum(amount), 0),"
                                " coalesce(sum(length(body)), 0) FROM batch WHERE number <= ?");
    Statement remove(m_database, "DELETE FROM batch WHERE number <= ?");
    Statement oldest(m_database, "SELECT at_ms FROM batch ORDER BY number LIMIT 1");
    if (going.bind(1, upTo).step() != Statement::Step::Row || !remove.bind(1, upTo).run() ||
        oldest.step() == Statement::Step::Failed) {
        return m_database.error();
    }
    m_totals.batches -= going.number(0);
    m_totals.values -= going.number(1);
    m_totals.bytes -= going.number(2) + going.number(0) * kRowBytes;
    m_totals.oldestAtMs = oldest.number(0);
    return StoreError();
}

StoreError Ledger::keepConfirmations(const QMap<QString, LedgerSink> &sinks)
{
    StoreError failed = m_database.run("DELETE FROM sink;");
    if (!failed.isNone()) {
        return failed;
    }
    Statement keep(m_database, "INSERT INTO sink VALUES (?, ?, ?)");
    for (auto it = sinks.begin(); it != sinks.end(); ++it) {
        keep.bind(1, it.key()).bind(2, it->confirmed).bind(3, it->droppedValues);
        if (!keep.run()) {
            return m_database.error();
        }
    }
    return StoreError();
}

StoreError Ledger::keepClock()
{
    Statement keep(m_database, "UPDATE setting SET value ="
                               " CASE name WHEN 'age_ms' THEN ? ELSE ? END"
                               " WHERE name IN ('age_ms', 'wall_ms')");
    return keep.bind(1, ageNowMs()).bind(2, m_clock.wallMs()).run() ? StoreError()
                                                                    : m_database.error();
}

StoreError Ledger::readTotals()
{
    Statement read(m_database,
                   "SELECT count(*), coalesce(sum(amount), 0),"
                   " coalesce(sum(length(body)), 0), coalesce(min(at_ms), 0),"
                   " coalesce((SELECT seq FROM sqlite_sequence WHERE name = 'batch'), 0)"
                   " FROM batch");
    if (read.step() != Statement::Step::Row) {
        return m_database.error();
    }
    m_totals.batches = read.number(0);
    m_totals.values = read.number(1);
    m_totals.bytes = read.number(2) + m_totals.batches * kRowBytes;
    m_totals.oldestAtMs = read.number(3);
    m_totals.last = read.number(4);
    return StoreError();
}

void Ledger::confirm(const QString &sink, qint64 number)
{
    const auto it = m_sinks.find(sink);
    if (it != m_sinks.end()) {
        it->confirmed = std::max(it->confirmed, std::min(number, m_totals.last));
    }
}

void Ledger::noteAhead(const QString &sink, const BatchRange &ahead)
{
    const auto it = m_sinks.find(sink);
    if (it != m_sinks.end()) {
        it->ahead = ahead;
    }
}

QVector<LedgerBatch> Ledger::after(qint64 number, int most, qint64 upTo)
{
    QVector<LedgerBatch> found;
    Statement read(m_database, "SELECT number, amount, body FROM batch WHERE number > ?"
                               " AND number <= ? ORDER BY number LIMIT ?");
    read.bind(1, number).bind(2, upTo).bind(3, most);
    while (read.step() == Statement::Step::Row) {
        found.append({read.number(0), static_cast<int>(read.number(1)), read.bytes(2)});
    }
    return found;
}

// What left the ledger were its oldest batches, and numbers have no gaps.
qint64 Ledger::waitingBatches(const QString &sink) const
{
    const LedgerSink known = m_sinks.value(sink);
    const qint64 behind = std::max(known.confirmed, lastGone());
    const qint64 ahead = known.ahead.upTo - std::max(known.ahead.after, behind);
    return m_totals.last - behind - std::max<qint64>(ahead, 0);
}

qint64 Ledger::waitingMs(const QString &sink)
{
    if (waitingBatches(sink) == 0) {
        return 0;
    }
    Statement oldest(m_database,
                     "SELECT at_ms FROM batch WHERE number > ? ORDER BY number LIMIT 1");
    oldest.bind(1, confirmed(sink));
    return oldest.step() == Statement::Step::Row ? ageNowMs() - oldest.number(0) : 0;
}

LedgerState Ledger::state() const
{
    LedgerState state;
    state.batches = m_totals.batches;
    state.values = m_totals.values;
    state.bytes = m_totals.bytes;
    state.sinks = m_sinks;
    if (state.batches > 0) {
        state.oldestAgeMs = ageNowMs() - m_totals.oldestAtMs;
    }
    if (const std::optional<double> bytesPerMs = m_rate.perMs()) {
        const double roomMs = static_cast<double>(m_bounds.ageMs - state.oldestAgeMs);
        const double room = static_cast<double>(m_bounds.bytes - state.bytes);
        const double fullMs = *bytesPerMs > 0 ? room / *bytesPerMs : roomMs;
        state.hoursLeft = std::max(0.0, std::min(roomMs, fullMs)) / kHourMs;
    }
    return state;
}

qint64 Ledger::ageNowMs() const
{
    return m_ageZeroMs + m_clock.nowMs();
}

} // namespace cnet::gateway
