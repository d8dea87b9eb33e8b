#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/postgresql/copy_text.h"
#include "gateway/postgresql/history_sql.h"
#include "gateway/postgresql/known_names.h"
#include "gateway/postgresql/pg_connection.h"
#include "gateway/sinks/sink.h"

#include "host/time/clock.h"

#include <QHostInfo>

#include <functional>
#include <set>

namespace cnet::gateway {

/**
 * Stores changes in a PostgreSQL database, each group of batches with its number in one
 * transaction: a batch that comes twice is stored once. It waits for nobody.
 */
class PostgresqlSink : public Sink
{
    Q_OBJECT

public:
    /** @param clock must outlive the sink */
    PostgresqlSink(const PostgresqlSettings &settings, Clock &clock);

    void begin(const QString &ledger) override;
    void take(const QVector<SinkBatch> &batches) override;
    int window() const override;

private:
    using Then = std::function<void(const PgAnswer &answer)>;

    // Each hands on to the next when the database has answered.
    void connectTo(const QHostInfo &found);
    void settle();
    void look();
    void readTaken();
    void store();
    void nameAll();
    void nameTags(int from);
    void nameStates(int from);
    void makeMonths();
    void beginBatch();
    void copy();
    void finishBatch();
    void prune();
    void dropMonths(QStringList tables);

    void run(const QByteArray &sql, Then then);
    void handleAnswer(const PgAnswer &answer);
    void again();
    void stop();
    void fail(const QString &reason);
    void notice(const QString &text);
    void judge(const QStringList &settings);
    QByteArray nextRows();

    PostgresqlSettings m_settings;
    Clock &m_clock;
    HistorySql m_sql;
    PgConnection m_connection;
    KnownNames m_names;
    CopyText m_text;
    std::set<Month> m_months; ///< that are known to be there
    std::set<Month> m_needed; ///< by what is being stored
    QByteArray m_password;
    QString m_ledger;
    Then m_then;                  ///< what follows the database's answer; nothing: none is due
    QVector<SinkBatch> m_waiting; ///< oldest first; not safe yet
    int m_group = 0;              ///< of the first ones: they are being stored; 0: none is
    int m_copied = 0;             ///< of these, batches that were sent
    int m_attempts = 0;           ///< to store them, that met somebody else's
    qint64 m_last = 0;            ///< number of the batch that was stored last
    qint64 m_pruneMs = 0;         ///< when old months are looked for next
    int m_lookup = -1;            ///< for the host's addresses
    bool m_isForgiving = false;   ///< what fails costs nothing
    QString m_noticed;
};

} // namespace cnet::gateway
