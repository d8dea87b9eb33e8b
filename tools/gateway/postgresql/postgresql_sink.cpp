#include "gateway/postgresql/postgresql_sink.h"

#include "gateway/postgresql/pg_parameters.h"
#include "gateway/sinks/secret_file.h"

#include <algorithm>
#include <utility>

namespace cnet::gateway {

namespace {

// While some are being stored, the next ones are handed over.
constexpr int kBatchesAtOnce = 16;
constexpr int kMostAttempts = 5;
constexpr int kTagsAtOnce = 1000;
constexpr qint64 kDayMs = 24LL * 60 * 60 * 1000;
constexpr qint64 kPruneEveryMs = 60LL * 60 * 1000;

} // namespace

PostgresqlSink::PostgresqlSink(const PostgresqlSettings &settings, Clock &clock)
    : m_settings(settings)
    , m_clock(clock)
    , m_sql(settings.schema)
    , m_connection(clock)
{
    connect(&m_connection, &PgConnection::opened, this, &PostgresqlSink::settle);
    connect(&m_connection, &PgConnection::answered, this, &PostgresqlSink::handleAnswer);
    connect(&m_connection, &PgConnection::broken, this, &PostgresqlSink::fail);
}

int PostgresqlSink::window() const
{
    return 2 * kBatchesAtOnce;
}

void PostgresqlSink::stop()
{
    QHostInfo::abortHostLookup(m_lookup);
    m_connection.close();
    m_then = Then();
    m_names.clear();
    m_months.clear();
    m_waiting.clear();
    m_group = 0;
    m_attempts = 0;
    m_isForgiving = false;
}

void PostgresqlSink::begin(const QString &ledger)
{
    stop();
    m_ledger = ledger;
    QString error;
    const auto password = readSecret(m_settings.password, error);
    if (!password) {
        fail(error);
        return;
    }
    m_password = *password;
    if (m_settings.host.startsWith(QLatin1Char('/'))) {
        m_connection.open(pgParameters(m_settings, m_password, QByteArray(), 1),
                          m_settings.timeoutMs);
        return;
    }
    // libpq would wait for the name's addresses.
    m_lookup = QHostInfo::lookupHost(m_settings.host, this,
                                     [this](const QHostInfo &found) { connectTo(found); });
}

void PostgresqlSink::connectTo(const QHostInfo &found)
{
    m_lookup = -1;
    QByteArray addresses;
    const auto all = found.addresses();
    for (const QHostAddress &address : all) {
        addresses += (addresses.isEmpty() ? "" : ",") + address.toString().toLatin1();
    }
    if (addresses.isEmpty()) {
        fail(QString::fromLatin1("host %1: %2").arg(m_settings.host, found.errorString()));
        return;
    }
    m_connection.open(pgParameters(m_settings, m_password, addresses, static_cast<int>(all.size())),
                      m_settings.timeoutMs);
}

void PostgresqlSink::run(const QByteArray &sql, Then then)
{
    m_then = std::move(then);
    m_connection.run(sql);
}

void PostgresqlSink::handleAnswer(const PgAnswer &answer)
{
    const Then then = std::exchange(m_then, Then());
    if (answer.failure.kind == PgFailure::Kind::None) {
        then(answer);
    } else if (m_isForgiving) {
        notice(QString::fromLatin1("old months stay: %1").arg(answer.failure.text));
        dropMonths({});
    } else if (answer.failure.kind == PgFailure::Kind::Again && m_attempts < kMostAttempts) {
        again();
    } else {
        fail(answer.failure.text);
    }
}

/** Somebody else wrote at the same time, and the server chose him. */
void PostgresqlSink::again()
{
    ++m_attempts;
    m_names.clear();
    run("ROLLBACK", [this](const PgAnswer &) {
        if (m_group > 0) {
            nameAll();
        } else {
            look();
        }
    });
}

void PostgresqlSink::fail(const QString &reason)
{
    stop();
    Q_EMIT failed(QString::fromLatin1("cannot store in %1: %2").arg(placeText(m_settings), reason));
}

void PostgresqlSink::notice(const QString &text)
{
    if (text != m_noticed) {
        m_noticed = text;
        Q_EMIT noticed(text);
    }
}

void PostgresqlSink::settle()
{
    run(m_sql.session(m_settings.timeoutMs), [this](const PgAnswer &) { look(); });
}

void PostgresqlSink::look()
{
    run(m_sql.look(), [this](const PgAnswer &answer) {
        const QStringList row = answer.rows.value(0);
        if (row.value(2) != QLatin1String("UTF8")) {
            fail(QString::fromLatin1("the database takes %1 only, and needs to take UTF8")
                     .arg(row.value(2)));
            return;
        }
        judge(row);
        if (row.value(3) == QLatin1String("t")) {
            readTaken();
        } else if (m_settings.isCreating) {
            run(m_sql.createTables(), [this](const PgAnswer &) { readTaken(); });
        } else {
            fail(QString::fromLatin1("there is no table %1.taken; create = true makes it")
                     .arg(m_settings.schema));
        }
    });
}

void PostgresqlSink::judge(const QStringList &settings)
{
    const QString commit = settings.value(0);
    if (settings.value(1) == QLatin1String("off")) {
        notice(
            QLatin1String("fsync is off at the server: a power cut there may cost the database"));
    } else if (commit == QLatin1String("off")) {
        notice(QLatin1String("synchronous_commit is off at the server: a crash there may cost what "
                             "it said was stored"));
    }
}

void PostgresqlSink::readTaken()
{
    run(m_sql.readTaken(m_ledger), [this](const PgAnswer &answer) {
        m_last = answer.rows.value(0).value(0).toLongLong();
        m_attempts = 0;
        Q_EMIT ready();
    });
}

void PostgresqlSink::take(const QVector<SinkBatch> &batches)
{
    m_waiting += batches;
    if (!m_then) {
        store();
    }
}

void PostgresqlSink::store()
{
    // What was stored, and was not heard of.
    qint64 old = 0;
    while (!m_waiting.isEmpty() && m_waiting.first().number <= m_last) {
        old = m_waiting.takeFirst().number;
    }
    m_group = std::min(kBatchesAtOnce, static_cast<int>(m_waiting.size()));
    if (m_group > 0) {
        nameAll();
    }
    if (old > 0) {
        Q_EMIT safe(old);
    }
}

void PostgresqlSink::nameAll()
{
    m_names.beginLook();
    m_needed.clear();
    qint64 day = -1;
    for (int i = 0; i < m_group; ++i) {
        const QVector<Change> &changes = m_waiting.at(i).changes;
        m_names.look(changes);
        for (const Change &change : changes) {
            if (change.atMs / kDayMs != day) {
                day = change.atMs / kDayMs;
                m_needed.insert(monthOf(change.atMs));
            }
        }
    }
    nameTags(0);
}

void PostgresqlSink::nameTags(int from)
{
    const auto tags = m_names.missingTags().mid(from, kTagsAtOnce);
    if (tags.isEmpty()) {
        nameStates(0);
        return;
    }
    run(m_sql.addTags(tags), [this, from](const PgAnswer &answer) {
        for (const QStringList &row : answer.rows) {
            m_names.noteTag(row.value(1), row.value(2).toInt(), row.value(3),
                            row.value(0).toLongLong());
        }
        nameTags(from + kTagsAtOnce);
    });
}

void PostgresqlSink::nameStates(int from)
{
    if (from >= m_names.missingStates().size()) {
        makeMonths();
        return;
    }
    const Change *of = m_names.missingStates().at(from);
    run(m_sql.addState(of->quality, of->cause), [this, of, from](const PgAnswer &answer) {
        m_names.noteState(of->quality, of->cause, answer.rows.value(0).value(0).toLongLong());
        nameStates(from + 1);
    });
}

void PostgresqlSink::makeMonths()
{
    for (const Month &month : m_needed) {
        if (m_settings.isCreating && m_months.count(month) == 0) {
            run(m_sql.makeMonth(month), [this, month](const PgAnswer &) {
                m_months.insert(month);
                makeMonths();
            });
            return;
        }
    }
    beginBatch();
}

void PostgresqlSink::beginBatch()
{
    const qint64 next = m_waiting.at(m_group - 1).number;
    run(m_sql.beginBatch(m_ledger, m_last, next), [this](const PgAnswer &answer) {
        if (answer.touched == 1) {
            copy();
        } else {
            fail(QLatin1String("another connection stored from the same ledger"));
        }
    });
}

void PostgresqlSink::copy()
{
    m_then = [this](const PgAnswer &) { finishBatch(); };
    m_copied = 0;
    m_connection.run(m_sql.copyAndCommit(), [this] { return nextRows(); });
}

QByteArray PostgresqlSink::nextRows()
{
    QByteArray rows;
    while (rows.isEmpty() && m_copied < m_group) {
        for (const Change &change : m_waiting.at(m_copied).changes) {
            m_text.add(change, m_names.numberOf(*change.source),
                       m_names.numberOf(change.quality, change.cause));
        }
        rows = m_text.finish();
        ++m_copied;
    }
    return rows;
}

void PostgresqlSink::finishBatch()
{
    m_last = m_waiting.at(m_group - 1).number;
    m_waiting.remove(0, m_group);
    m_group = 0;
    m_attempts = 0;
    Q_EMIT safe(m_last);
    if (m_settings.ageMs > 0 && m_clock.nowMs() >= m_pruneMs && !m_then) {
        prune();
    } else if (!m_then) {
        store();
    }
}

// What fails here is told, and tried again later; it keeps no change from being stored.
void PostgresqlSink::prune()
{
    m_pruneMs = m_clock.nowMs() + kPruneEveryMs;
    m_isForgiving = true;
    run(m_sql.oldMonths(m_clock.wallMs(), m_settings.ageMs), [this](const PgAnswer &answer) {
        QStringList tables;
        for (const QStringList &row : answer.rows) {
            tables.append(row.value(0));
        }
        m_months.clear();
        dropMonths(tables);
    });
}

void PostgresqlSink::dropMonths(QStringList tables)
{
    if (tables.isEmpty()) {
        m_isForgiving = false;
        store();
        return;
    }
    const QString table = tables.takeFirst();
    run(m_sql.dropMonth(table), [this, tables](const PgAnswer &) { dropMonths(tables); });
}

} // namespace cnet::gateway
