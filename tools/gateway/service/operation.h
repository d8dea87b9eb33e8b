#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/delivery/recorder_thread.h"
#include "gateway/delivery/trouble.h"
#include "gateway/service/log_limit.h"
#include "gateway/service/pulse.h"
#include "gateway/service/service_manager.h"
#include "gateway/service/snapshot_maker.h"
#include "gateway/status/http_server.h"
#include "gateway/status/snapshot.h"

#include "host/time/clock.h"

#include <QObject>

#include <functional>
#include <memory>

namespace cnet::gateway {

/**
 * What others learn of a gateway that runs: the service manager that it lives, a terminal how it
 * stands, a monitoring system its numbers. With each beat of the pulse a snapshot is taken; all
 * others look at that.
 */
class Operation : public QObject
{
    Q_OBJECT

public:
    using Lines = std::function<QVector<LineMeters>()>;

    /**
     * @param lines says how they stand, on this thread
     * @param recorder,log,clock must outlive this object
     */
    Operation(const GatewayConfig &config, const QString &version, Lines lines,
              RecorderThread &recorder, LogLimit &log, Clock &clock);
    ~Operation() override;

    /** The gateway runs: tells whoever wants to know. */
    void start();

    // While a changed configuration is taken; both belong together.

    void tellReloading() { m_manager.tellReloading(); }
    void tellReloaded(const GatewayConfig &config);

    /** The gateway ends: nobody looks at it any more. */
    void stop();

private:
    void handleBeat(const RecorderState &state);
    void serveIn(const QString &folder);
    void stopServingLocally();
    void serveMetrics();

    GatewayConfig m_config;
    Lines m_lines;
    LogLimit &m_log;
    Clock &m_clock;
    ServiceManager m_manager;
    SnapshotMaker m_maker;
    SnapshotBoard m_board;
    Pulse m_pulse;
    std::unique_ptr<HttpServer> m_local;
    QString m_folder; ///< of m_local's file
    std::unique_ptr<HttpServer> m_metrics;
    Trouble m_metricsTrouble;
    std::unique_ptr<Alarm> m_again;
    bool m_isRunning = false;
};

} // namespace cnet::gateway
