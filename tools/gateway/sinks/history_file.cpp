#include "gateway/sinks/history_file.h"

#include <algorithm>

namespace cnet::gateway {

namespace {

const char kTables[] =
    "CREATE TABLE IF NOT EXISTS tag (id INTEGER PRIMARY KEY, line TEXT NOT NULL,"
    " station INTEGER NOT NULL, name TEXT NOT NULL, unit TEXT NOT NULL, type TEXT NOT NULL,"
    " scale REAL NOT NULL, shift REAL NOT NULL, UNIQUE (line, station, name));"
    "CREATE TABLE IF NOT EXISTS state (id INTEGER PRIMARY KEY, quality TEXT NOT NULL,"
    " reason TEXT NOT NULL, UNIQUE (quality, reason));"
    "CREATE TABLE IF NOT EXISTS change (id INTEGER PRIMARY KEY AUTOINCREMENT,"
    " tag INTEGER NOT NULL, time_ms INTEGER NOT NULL, state INTEGER NOT NULL, value);"
    "CREATE INDEX IF NOT EXISTS change_of_tag ON change (tag, time_ms);"
    "CREATE TABLE IF NOT EXISTS taken (ledger TEXT PRIMARY KEY, number INTEGER NOT NULL)"
    " WITHOUT ROWID;"
    "CREATE VIEW IF NOT EXISTS history AS SELECT"
    " strftime('%Y-%m-%dT%H:%M:%S', time_ms / 1000, 'unixepoch') ||"
    " printf('.%03dZ', time_ms % 1000) AS time, line, station, name AS tag, value, unit, quality,"
    " reason, time_ms, change.id AS id"
    " FROM change JOIN tag ON tag.id = change.tag JOIN state ON state.id = change.state;";

} // namespace

StoreError HistoryFile::open(const QString &path, const HistoryBounds &bounds,
                             const QString &ledger)
{
    m_bounds = bounds;
    m_ledger = ledger;
    forget();
    StoreError failed =
        m_database.open(path, Database::Durability::Full, Database::Sharing::Readers);
    if (failed.isNone()) {
        failed = m_database.run(kTables);
    }
    if (failed.isNone()) {
        failed = readLast();
    }
    if (!failed.isNone()) {
        m_database.close();
    }
    return failed;
}

void HistoryFile::close()
{
    m_database.close();
}

StoreError HistoryFile::readLast()
{
    Statement read(m_database, "SELECT number FROM taken WHERE ledger = ?");
    const Statement::Step step = read.bind(1, m_ledger).step();
    m_last = step == Statement::Step::Row ? read.number(0) : 0;
    return step == Statement::Step::Failed ? m_database.error() : StoreError();
}

StoreError HistoryFile::store(const QVector<SinkBatch> &batches)
{
    Transaction transaction(m_database);
    Statement insert(m_database,
                     "INSERT INTO change (tag, time_ms, state, value) VALUES (?, ?, ?, ?)");
    qint64 last = m_last;
    StoreError failed;
    for (const SinkBatch &batch : batches) {
        for (int i = 0; batch.number > m_last && i < batch.changes.size(); ++i) {
            failed = this->insert(batch.changes.at(i), insert);
            if (!failed.isNone()) {
                forget();
                return failed;
            }
        }
        last = std::max(last, batch.number);
    }
    Statement taken(m_database, "INSERT OR REPLACE INTO taken VALUES (?, ?)");
    failed =
        taken.bind(1, m_ledger).bind(2, last).run() ? transaction.commit() : m_database.error();
    if (failed.isNone()) {
        m_last = last;
    } else {
        forget();
    }
    return failed;
}

/** What was rolled back is not known any more. */
void HistoryFile::forget()
{
    m_tags.clear();
    m_sources.clear();
    m_states.clear();
}

StoreError HistoryFile::insert(const Change &change, Statement &statement)
{
    const qint64 tag = tagOf(change.source);
    const qint64 state = stateOf(change);
    statement.bind(1, tag).bind(2, change.atMs).bind(3, state).bindScalar(4, change.value);
    const bool isStored = tag > 0 && state > 0 && statement.run();
    return isStored ? StoreError() : m_database.error();
}

qint64 HistoryFile::tagOf(const std::shared_ptr<const ChangeSource> &source)
{
    Known &known = m_tags[source.get()];
    if (known.id > 0) {
        return known.id;
    }
    Statement keep(m_database,
                   "INSERT INTO tag (line, station, name, unit, type, scale, shift)"
                   " VALUES (?, ?, ?, ?, ?, ?, ?) ON CONFLICT (line, station, name) DO UPDATE SET"
                   " unit = excluded.unit, type = excluded.type, scale = excluded.scale,"
                   " shift = excluded.shift RETURNING id");
    keep.bind(1, source->line).bind(2, source->station).bind(3, source->tag).bind(4, source->unit);
    keep.bind(5, source->type.text()).bindScalar(6, source->scale).bindScalar(7, source->offset);
    if (keep.step() == Statement::Step::Row) {
        const qint64 id = keep.number(0);
        keep.run();
        known = {source, id};
        // The tag is as this source has it; should the one before come again, it is told again.
        const ChangeSource *before = m_sources.value(id, source.get());
        if (before != source.get()) {
            m_tags.remove(before);
        }
        m_sources[id] = source.get();
        return id;
    }
    return 0;
}

qint64 HistoryFile::stateOf(const Change &change)
{
    const QString quality = qualityText(change.quality);
    qint64 &id = m_states[quality + QLatin1Char('\n') + change.cause];
    if (id > 0) {
        return id;
    }
    Statement add(m_database, "INSERT OR IGNORE INTO state (quality, reason) VALUES (?, ?)");
    Statement find(m_database, "SELECT id FROM state WHERE quality = ? AND reason = ?");
    if (add.bind(1, quality).bind(2, change.cause).run() &&
        find.bind(1, quality).bind(2, change.cause).step() == Statement::Step::Row) {
        id = find.number(0);
    }
    return id;
}

StoreError HistoryFile::prune(qint64 wallMs, qint64 most)
{
    // By the order in which they came, whatever the clock said meanwhile. What makes room for bytes
    // does not look at times.
    const bool isTooMuch = m_database.fileBytes() > m_bounds.bytes;
    Statement old(m_database, "DELETE FROM change WHERE id IN (SELECT id FROM change ORDER BY id"
                              " LIMIT ?) AND (? OR time_ms < ?)");
    old.bind(1, most).bind(2, isTooMuch ? 1 : 0).bind(3, wallMs - m_bounds.ageMs);
    return old.run() ? m_database.run("PRAGMA incremental_vacuum(1000);") : m_database.error();
}

} // namespace cnet::gateway
