#include "gateway/postgresql/history_sql.h"

namespace cnet::gateway {

namespace {

// "@" stands for the schema, whose name has no such sign. What proves that all of it is there comes
// last. An index on tag and time is what curves are read by; time alone is served by the months.
const char kTables[] =
    "BEGIN;"
    "CREATE SCHEMA IF NOT EXISTS @;"
    "CREATE TABLE IF NOT EXISTS @.tag (id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,"
    " line text NOT NULL, station integer NOT NULL, name text NOT NULL, unit text NOT NULL,"
    " type text NOT NULL, scale double precision NOT NULL, shift double precision NOT NULL,"
    " UNIQUE (line, station, name));"
    "CREATE TABLE IF NOT EXISTS @.state (id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,"
    " quality text NOT NULL, reason text NOT NULL, UNIQUE (quality, reason));"
    "CREATE SEQUENCE IF NOT EXISTS @.change_id;"
    "CREATE TABLE IF NOT EXISTS @.change (time timestamptz(3) NOT NULL,"
    " id bigint NOT NULL DEFAULT nextval('@.change_id'), tag bigint NOT NULL,"
    " state bigint NOT NULL, number numeric, text text, truth boolean)"
    " PARTITION BY RANGE (time);"
    "CREATE INDEX IF NOT EXISTS change_of_tag ON @.change (tag, time);"
    "CREATE OR REPLACE VIEW @.history AS SELECT c.time, t.line, t.station, t.name AS tag,"
    " coalesce(c.number::text, c.text, c.truth::text) AS value, c.number, c.text, c.truth, t.unit,"
    " s.quality, s.reason, c.id"
    " FROM @.change c JOIN @.tag t ON t.id = c.tag JOIN @.state s ON s.id = c.state;"
    "CREATE TABLE IF NOT EXISTS @.taken (ledger text PRIMARY KEY, number bigint NOT NULL);"
    "COMMIT";

// To attach a month does not wait for those who read the others; to create it in its place would.
const char kMonth[] = "DO $month$ BEGIN IF to_regclass('@.change_%1') IS NULL THEN"
                      " CREATE TABLE @.change_%1 (LIKE @.change INCLUDING DEFAULTS);"
                      " ALTER TABLE @.change ATTACH PARTITION @.change_%1"
                      " FOR VALUES FROM ('%2') TO ('%3');"
                      " END IF; END $month$";

const char kOldMonths[] =
    "SELECT c.relname FROM pg_catalog.pg_inherits i JOIN pg_catalog.pg_class c ON c.oid ="
    " i.inhrelid WHERE i.inhparent = '@.change'::regclass"
    " AND c.relname ~ '^change_[0-9]{4}_[0-9]{2}$'"
    " AND (to_date(substr(c.relname, 8), 'YYYY_MM') + interval '1 month') AT TIME ZONE 'UTC' <"
    " least(now(), to_timestamp(%1)) - interval '1 second' * %2 ORDER BY 1";

} // namespace

QByteArray sqlText(const QString &text)
{
    QByteArray utf8 = text.toUtf8();
    utf8.replace('\0', "").replace('\'', "''");
    return '\'' + utf8 + '\'';
}

QByteArray sqlName(const QString &name)
{
    QByteArray utf8 = name.toUtf8();
    utf8.replace('\0', "").replace('"', "\"\"");
    return '"' + utf8 + '"';
}

HistorySql::HistorySql(const QString &schema)
    : m_schema(schema)
{}

QByteArray HistorySql::within(QByteArray sql) const
{
    return sql.replace("@", sqlName(m_schema));
}

QByteArray HistorySql::session(int timeoutMs) const
{
    // A lock that somebody holds is told by the server, before it seems to be gone.
    return "SET standard_conforming_strings = on; SET client_min_messages = warning;"
           " SET timezone = 'UTC'; SET lock_timeout = " +
           QByteArray::number(timeoutMs / 2 + 1);
}

QByteArray HistorySql::look() const
{
    return within("SELECT current_setting('synchronous_commit'), current_setting('fsync'),"
                  " current_setting('server_encoding'), to_regclass('@.taken') IS NOT NULL");
}

QByteArray HistorySql::createTables() const
{
    return within(kTables);
}

QByteArray HistorySql::readTaken(const QString &ledger) const
{
    const QByteArray name = sqlText(ledger);
    return within("INSERT INTO @.taken VALUES (") + name +
           within(", 0) ON CONFLICT DO NOTHING; SELECT number FROM @.taken WHERE ledger = ") + name;
}

QByteArray HistorySql::beginBatch(const QString &ledger, qint64 last, qint64 next) const
{
    return within("BEGIN; UPDATE @.taken SET number = ") + QByteArray::number(next) +
           " WHERE number = " + QByteArray::number(last) + " AND ledger = " + sqlText(ledger);
}

QByteArray HistorySql::copyAndCommit() const
{
    return within("COPY @.change (time, tag, state, number, text, truth) FROM STDIN; COMMIT");
}

QByteArray HistorySql::addTags(const QVector<const ChangeSource *> &tags) const
{
    QByteArray rows;
    for (const ChangeSource *tag : tags) {
        rows += rows.isEmpty() ? "(" : ",(";
        rows += sqlText(tag->line) + ',' + QByteArray::number(tag->station) + ',' +
                sqlText(tag->tag) + ',' + sqlText(tag->unit) + ',' + sqlText(tag->type.text()) +
                ',' + QByteArray::number(tag->scale, 'g', 17) + ',' +
                QByteArray::number(tag->offset, 'g', 17) + ')';
    }
    return within("INSERT INTO @.tag (line, station, name, unit, type, scale, shift) VALUES ") +
           rows +
           " ON CONFLICT (line, station, name) DO UPDATE SET unit = excluded.unit,"
           " type = excluded.type, scale = excluded.scale, shift = excluded.shift"
           " RETURNING id, line, station, name";
}

QByteArray HistorySql::addState(Quality quality, const QString &cause) const
{
    return within("INSERT INTO @.state (quality, reason) VALUES (") +
           sqlText(qualityText(quality)) + ',' + sqlText(cause) +
           ") ON CONFLICT (quality, reason) DO UPDATE SET reason = excluded.reason RETURNING id";
}

QByteArray HistorySql::makeMonth(const Month &month) const
{
    return within(kMonth)
        .replace("%1", month.name())
        .replace("%2", month.start())
        .replace("%3", month.next().start());
}

QByteArray HistorySql::oldMonths(qint64 wallMs, qint64 ageMs) const
{
    return within(kOldMonths)
        .replace("%1", QByteArray::number(wallMs / 1000))
        .replace("%2", QByteArray::number(ageMs / 1000));
}

QByteArray HistorySql::dropMonth(const QString &table) const
{
    return within("DROP TABLE IF EXISTS @.") + sqlName(table);
}

} // namespace cnet::gateway
