#pragma once

#include "gateway/postgresql/postgresql_sink.h"
#include "gateway/support/changes.h"
#include "gateway/support/postgres_server.h"
#include "host/time/system_clock.h"

#include <QTemporaryFile>

namespace cnet::gateway {

/** A server with a database `plant`, and sinks that store there. */
class PostgresFixture
{
public:
    bool make() { return server.make() && writePassword("right\n"); }

    bool writePassword(const QByteArray &password)
    {
        return m_password.open() && m_password.resize(0) && m_password.write(password) > 0 &&
               m_password.flush();
    }

    /** How the gateway connects. @param schema of its tables, which it makes */
    PostgresqlSettings settings(const char *schema = "cnet") const
    {
        PostgresqlSettings settings;
        settings.host = QLatin1String("127.0.0.1");
        settings.port = server.port();
        settings.database = QLatin1String("plant");
        settings.user = QLatin1String("gateway");
        settings.password.file = m_password.fileName();
        settings.sslMode = QLatin1String("prefer");
        settings.schema = QLatin1String(schema);
        settings.isCreating = true;
        return settings;
    }

    PostgresServer server;

private:
    QTemporaryFile m_password;
};

/** A sink, and what it said. */
class HeardSink
{
public:
    explicit HeardSink(const PostgresqlSettings &settings)
        : sink(settings, SystemClock::instance())
    {
        QObject::connect(&sink, &Sink::ready, &sink, [this] { isReady = true; });
        QObject::connect(&sink, &Sink::safe, &sink, [this](qint64 number) { safe = number; });
        QObject::connect(&sink, &Sink::failed, &sink, [this](const QString &reason) {
            isReady = false;
            failures.append(reason);
        });
        QObject::connect(&sink, &Sink::noticed, &sink,
                         [this](const QString &text) { notices.append(text); });
    }

    /** @return true: it is ready */
    bool begin(const char *ledger = "ledger")
    {
        const auto before = failures.size();
        sink.begin(QLatin1String(ledger));
        return QTest::qWaitFor([&] { return isReady || failures.size() > before; }, 30000) &&
               isReady;
    }

    /** @return true: the last one is safe */
    bool store(const QVector<SinkBatch> &batches)
    {
        sink.take(batches);
        const qint64 last = batches.last().number;
        return QTest::qWaitFor([&] { return safe == last || !isReady; }, 30000) && safe == last;
    }

    PostgresqlSink sink;
    bool isReady = false;
    qint64 safe = 0;
    QStringList failures;
    QStringList notices;
};

/** Batches from a number on, each with one change: its number. */
inline QVector<SinkBatch> numberedBatches(qint64 first, int count)
{
    QVector<SinkBatch> batches;
    for (int i = 0; i < count; ++i) {
        SinkBatch batch;
        batch.number = first + i;
        batch.changes = {changeOf(sourceOf("counter"), batch.number, 1793491200000)};
        batches.append(batch);
    }
    return batches;
}

} // namespace cnet::gateway
