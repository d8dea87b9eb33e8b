#include "rate.h"

#include "host/time/system_clock.h"

#include <QElapsedTimer>
#include <QThread>

#include <sys/resource.h>

namespace cnet::gateway {

namespace {

// What may be on its way; in the gateway the lines never wait.
constexpr qint64 kMostMemory = 4LL * 1024 * 1024;
constexpr qint64 kMostBatches = 64;
constexpr int kBatchesUnseen = 8;
constexpr int kPauseMs = 2;

double cpuSeconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void sayTrouble(const QString &line)
{
    qWarning("%s", qPrintable(line));
}

} // namespace

RateMeter::RateMeter(const GatewayConfig &config)
    : m_recorder(config, SystemClock::instance(), Say(sayTrouble))
    , m_batcher(SystemClock::instance(), config.batch,
                [this](const LedgerBatch &batch) { put(batch); })
{
    QObject::connect(&m_recorder, &RecorderThread::looked, &m_loop,
                     [this](const RecorderState &state) {
                         m_state = state;
                         m_loop.quit();
                     });
    const StoreError failed = m_recorder.start();
    if (!failed.isNone()) {
        qFatal("%s", qPrintable(failed.text));
    }
}

Rate RateMeter::bring(Load &load, qint64 values)
{
    m_bytes = 0;
    const double before = cpuSeconds();
    QElapsedTimer time;
    time.start();
    for (qint64 left = values; left > 0; --left) {
        m_batcher.add(load.next());
    }
    m_batcher.flush();
    waitFor(0, 0);
    return {static_cast<double>(time.nsecsElapsed()) / 1e9, cpuSeconds() - before, m_bytes};
}

void RateMeter::put(const LedgerBatch &batch)
{
    m_bytes += batch.body.size();
    m_recorder.put(batch);
    // The ledger stores together what came while the disk had it wait, as in the gateway.
    if (++m_unseen == kBatchesUnseen) {
        m_unseen = 0;
        waitFor(kMostMemory, kMostBatches);
    }
}

void RateMeter::waitFor(qint64 memoryBytes, qint64 batches)
{
    const auto look = [this] {
        m_recorder.look();
        m_loop.exec();
    };
    look();
    while (m_state.memoryBytes > memoryBytes || m_state.sinks.first().waitingBatches > batches) {
        QThread::msleep(kPauseMs);
        look();
    }
}

} // namespace cnet::gateway
