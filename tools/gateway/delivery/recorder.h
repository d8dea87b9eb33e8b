#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/delivery/inbox.h"
#include "gateway/delivery/recorder_state.h"
#include "gateway/delivery/sink_feed.h"
#include "gateway/delivery/trouble.h"
#include "gateway/store/ledger.h"

#include <QObject>

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace cnet::gateway {

/**
 * Stores what comes from the lines in the ledger, and from there brings it to all sinks. It waits
 * for the disk, so it has a thread of its own; see RecorderThread.
 */
class Recorder : public QObject
{
    Q_OBJECT

public:
    /** @param inbox,clock must outlive this object */
    Recorder(const GatewayConfig &config, Inbox &inbox, Clock &clock, Say say);

    /**
     * Opens the ledger, and begins with the sinks. While the disk is full it goes on trying, and
     * what comes waits in the inbox.
     * @return what failed otherwise: nothing will be stored
     */
    StoreError start();

    /** The inbox has something. */
    void commit();

    /**
     * Takes sinks and bounds from another configuration. A sink that stands there as before is not
     * touched. One that ends is brought what there is, if that does not take long; another one of
     * its name begins behind it. Says what of the ledger cannot be changed while it runs.
     */
    void reload(const GatewayConfig &config);

    /** Tells all sinks how a line or station does; those that come later hear it, too. */
    void tell(const LineStatus &status);

    /** Tells all sinks what they hear of from now on; those that come later hear it, too. */
    void watch(const QVector<TopicNames> &names);

    /**
     * Stores what there is, brings to the sinks what they take within a second or so, and keeps how
     * far: finished() follows, two seconds later at most unless the disk is slow.
     */
    void finish();

    /** How it stands. It asks the ledger's file for little. */
    RecorderState state();

    /** Hands an answer to the sink that asked; without effect where there is none any more. */
    void answer(const WriteAnswer &answer);

Q_SIGNALS:
    /** A sink was asked to write. answer() follows. */
    void asked(const cnet::gateway::WriteRequest &request);
    /** @param lost changes that could not be stored and are lost with this object */
    void finished(qint64 lost);

private:
    struct OwnSink
    {
        SinkConfig config;
        std::unique_ptr<SinkFeed> feed;
    };

    StoreError open();
    void tryAgain();
    void beginSinks(bool isFirst);
    void beginSink(const SinkConfig &sink);
    bool isWanted(const SinkConfig &sink) const;
    void settle();
    qint64 valuesInMemory() const;
    void sayFixed(const LedgerConfig &ledger);
    bool store();
    void sayDropped();

    LedgerConfig m_config;
    QVector<SinkConfig> m_wanted; ///< by the configuration
    Inbox &m_inbox;
    Clock &m_clock;
    Say m_say;
    Ledger m_ledger;
    Trouble m_trouble;
    std::unique_ptr<Alarm> m_again;
    std::unique_ptr<Alarm> m_settles; ///< a sink has left
    bool m_isOpen = false;            ///< the ledger
    bool m_isFinishing = false;
    qint64 m_lost = 0;
    std::vector<OwnSink> m_sinks; ///< also those that are about to leave
    QVector<TopicNames> m_watched;
    bool m_isWatching = false;
    std::map<std::pair<QString, int>, LineStatus> m_statuses; ///< by line and station, -1: itself
    qint64 m_toldDropped = 0; ///< changes that the inbox had to drop and that were told of
};

} // namespace cnet::gateway
