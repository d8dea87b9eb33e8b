#pragma once

#include "gateway/sinks/sink.h"
#include "gateway/store/database.h"

#include <QHash>

namespace cnet::gateway {

/** What a history may grow to; the oldest changes make room. */
struct HistoryBounds
{
    qint64 ageMs = 1; ///< 1 or more
    qint64 bytes = 1; ///< of the file, 1 or more
};

/**
 * An SQLite file with all changes, which others may read meanwhile: the view `history` has them for
 * people. A batch that comes a second time is not stored again.
 */
class HistoryFile
{
public:
    /** @param ledger what the numbers of batches belong to */
    StoreError open(const QString &path, const HistoryBounds &bounds, const QString &ledger);
    void close();

    /** Stores batches, or nothing where something fails. */
    StoreError store(const QVector<SinkBatch> &batches);

    /**
     * Removes some of what is too old or too much, so that it takes a moment only.
     * @param wallMs now, in milliseconds since 1970 in UTC
     * @param most changes that go, 1 or more
     */
    StoreError prune(qint64 wallMs, qint64 most);

private:
    struct Known
    {
        std::shared_ptr<const ChangeSource> source; ///< so that its address is no other's
        qint64 id = 0;
    };

    StoreError readLast();
    void forget();
    StoreError insert(const Change &change, Statement &statement);
    qint64 tagOf(const std::shared_ptr<const ChangeSource> &source);
    qint64 stateOf(const Change &change);

    Database m_database;
    HistoryBounds m_bounds;
    QString m_ledger;
    qint64 m_last = 0; ///< batch that was stored last
    QHash<const ChangeSource *, Known> m_tags;
    QHash<qint64, const ChangeSource *> m_sources; ///< of m_tags, by id
    QHash<QString, qint64> m_states;
};

} // namespace cnet::gateway
