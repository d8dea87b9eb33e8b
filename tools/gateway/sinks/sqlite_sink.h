#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/sinks/history_file.h"
#include "gateway/sinks/sink.h"

#include "host/time/clock.h"

namespace cnet::gateway {

/** Stores changes in an SQLite file. It is done with each batch at once. */
class SqliteSink : public Sink
{
    Q_OBJECT

public:
    /** @param clock must outlive the sink */
    SqliteSink(const SqliteSettings &settings, Clock &clock);

    void begin(const QString &ledger) override;
    void take(const QVector<SinkBatch> &batches) override;
    int window() const override;
    /** Its file knows one number up to which it has everything. */
    Order order() const override { return Order::OfLedger; }

private:
    StoreError prune();
    void fail(const StoreError &error);

    SqliteSettings m_settings;
    Clock &m_clock;
    HistoryFile m_file;
    qint64 m_prunedMs = 0;
    qint64 m_sincePruned = 0; ///< changes
};

} // namespace cnet::gateway
