#include "gateway/sinks/sqlite_sink.h"

#include <algorithm>

namespace cnet::gateway {

namespace {

// Of a backlog: so many batches are stored with one wait for the disk.
constexpr int kBatchesAtOnce = 16;
constexpr qint64 kPruneEveryMs = 1000;
constexpr qint64 kPrunedAtLeast = 1000;

} // namespace

SqliteSink::SqliteSink(const SqliteSettings &settings, Clock &clock)
    : m_settings(settings)
    , m_clock(clock)
{}

int SqliteSink::window() const
{
    return kBatchesAtOnce;
}

void SqliteSink::begin(const QString &ledger)
{
    const StoreError failed =
        m_file.open(m_settings.path, {m_settings.ageMs, m_settings.bytes}, ledger);
    if (failed.isNone()) {
        Q_EMIT ready();
    } else {
        fail(failed);
    }
}

void SqliteSink::take(const QVector<SinkBatch> &batches)
{
    StoreError failed = m_file.store(batches);
    if (failed.isNone()) {
        for (const SinkBatch &batch : batches) {
            m_sincePruned += batch.changes.size();
        }
        Q_EMIT safe(batches.last().number);
    } else if (failed.kind == StoreError::Kind::Full) {
        // Old changes may make the room that is missing.
        prune();
    }
    if (failed.isNone() && m_clock.nowMs() - m_prunedMs >= kPruneEveryMs) {
        failed = prune();
    }
    if (!failed.isNone()) {
        fail(failed);
    }
}

// Twice what came: a history over its bounds comes back to them.
StoreError SqliteSink::prune()
{
    const qint64 most = std::max(kPrunedAtLeast, 2 * m_sincePruned);
    m_prunedMs = m_clock.nowMs();
    m_sincePruned = 0;
    return m_file.prune(m_clock.wallMs(), most);
}

void SqliteSink::fail(const StoreError &error)
{
    m_file.close();
    Q_EMIT failed(QString::fromLatin1("cannot store in %1: %2").arg(m_settings.path, error.text));
}

} // namespace cnet::gateway
