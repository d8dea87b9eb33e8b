#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/delivery/recorder_thread.h"

#include "load.h"

#include <QEventLoop>

namespace cnet::gateway {

/** What bringing some changes to a sink took. */
struct Rate
{
    double seconds = 0;
    double cpuSeconds = 0; ///< of this process: user and system
    qint64 ledgerBytes = 0;
};

/**
 * The gateway from its batches on, with threads as in the program: batches are made as fast as the
 * ledger and the sink take them, so that neither has more to do than a little.
 */
class RateMeter
{
public:
    explicit RateMeter(const GatewayConfig &config);

    /** Waits until the sink has confirmed all. */
    Rate bring(Load &load, qint64 values);

private:
    void put(const LedgerBatch &batch);
    /** Asks the recorder until no more is under way than this. */
    void waitFor(qint64 memoryBytes, qint64 batches);

    RecorderThread m_recorder;
    Batcher m_batcher;
    QEventLoop m_loop;
    RecorderState m_state;
    int m_unseen = 0; ///< batches since it was asked how far they are
    qint64 m_bytes = 0;
};

} // namespace cnet::gateway
