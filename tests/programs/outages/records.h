#pragma once

#include "outages/edge_record.h"
#include "outages/told.h"

#include "gateway/support/postgres_server.h"
#include "sparkplug/wire/watcher.h"

#include <QMap>
#include <QStringList>

#include <optional>

/** A history file: what it has, in its order. */
QVector<Told> readHistory(const QString &file);

/** Number of the last batch that is in a history file; 0: none. */
qint64 takenByHistory(const QString &file);

/**
 * Makes a ledger that keeps a copy of each batch that it takes, in the same transaction and
 * whatever becomes of the batch itself: what no sink can tell.
 */
bool makeWatchedLedger(const QString &file, const QStringList &sinks);

/** What a watched ledger whose gateway does not run ever took. */
struct LedgerRecord
{
    QVector<Told> taken;           ///< in its order
    qint64 last = 0;               ///< number of the last batch
    bool isWhole = true;           ///< no number is missing in the copy
    QMap<QString, qint64> dropped; ///< changes that it counted as such, by sink
};
LedgerRecord readLedger(const QString &file);

/** Number of the last batch that a ledger whose gateway does not run ever took. */
qint64 lastOfLedger(const QString &file);

QVector<Told> readDatabase(const cnet::gateway::PostgresServer &server);
qint64 takenByDatabase(const cnet::gateway::PostgresServer &server);

/**
 * What a message of a sink with site "plant" says about line "press".
 * @return nothing: it is about something else
 */
std::optional<Told> toldByMessage(const QByteArray &topic, const QByteArray &payload);

/** What a subscriber of the broker was told, through all lives of the broker. */
class BrokerRecord
{
public:
    /** Subscribes to a broker that the gateway does not reach yet. */
    bool start(quint16 port) { return m_watcher.start(port); }

    /** Reads all that the broker has for its subscriber. @return false when that did not come */
    bool catchUp();

    /** The broker is dead: reads what it had sent. @return false when that did not end */
    bool finishReading();

    const QVector<Told> &all();
    const EdgeRecord &edge();

private:
    void read();
    void read(const spcheck::Message &message);

    spcheck::Watcher m_watcher;
    int m_read = 0; ///< of what the watcher saw
    int m_connection = 0;
    int m_marks = 0; ///< that came back
    int m_asked = 0; ///< marks that were sent
    QVector<Told> m_all;
    EdgeRecord m_edge;
};
