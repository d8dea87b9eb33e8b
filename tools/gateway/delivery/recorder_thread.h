#pragma once

#include "gateway/delivery/recorder.h"

#include <QObject>
#include <QThread>

#include <memory>

namespace cnet::gateway {

/** A recorder on a thread of its own. All calls are made on the thread of the lines. */
class RecorderThread : public QObject
{
    Q_OBJECT

public:
    /** @param clock must outlive this object */
    RecorderThread(const GatewayConfig &config, Clock &clock, const Say &say);
    ~RecorderThread() override;

    /** Waits until the ledger is open. @return what failed */
    StoreError start();

    /** Hands on a batch, and does not wait. */
    void put(const LedgerBatch &batch);

    /** Takes sinks and bounds from another configuration, and does not wait. */
    void reload(const GatewayConfig &config) { Q_EMIT reloading(config); }

    /** Tells all sinks how a line or station does, and does not wait. */
    void tell(const LineStatus &status) { Q_EMIT told(status); }

    /** Tells all sinks what they hear of from now on, and does not wait. */
    void watch(const QVector<TopicNames> &names) { Q_EMIT watching(names); }

    /** Asks how the recorder stands; looked() follows, from its thread. */
    void look() { Q_EMIT looking(); }

    /**
     * Stores all, ends the sinks and the thread, and waits for it.
     * @return changes that could not be stored and are lost
     */
    qint64 stop();

    /** Moves an object to the recorder's thread. It must be back, or outlive stop(). */
    void host(QObject &guest) { guest.moveToThread(&m_thread); }

    /** Hands an answer to the sink that asked, never from within its asked(). On any thread. */
    void answer(const WriteAnswer &answer) { Q_EMIT answering(answer); }

Q_SIGNALS:
    /** A sink was asked to write. On the recorder's thread. */
    void asked(const cnet::gateway::WriteRequest &request);
    void looked(const cnet::gateway::RecorderState &state);
    // Heard on the recorder's thread.
    void opening(); ///< waits until it is done
    void filled();  ///< the inbox has something
    void reloading(const cnet::gateway::GatewayConfig &config);
    void told(const cnet::gateway::LineStatus &status);
    void watching(const QVector<cnet::gateway::TopicNames> &names);
    void answering(const cnet::gateway::WriteAnswer &answer);
    void looking();
    void ending();

private:
    GatewayConfig m_config;
    Clock &m_clock;
    Say m_say;
    Inbox m_inbox;
    QThread m_thread;
    QObject m_place; ///< lives on the thread, and runs what is to happen there
    std::unique_ptr<Recorder> m_recorder;
    StoreError m_failed; ///< what came of opening()
    qint64 m_lost = 0;   ///< what came of ending()

    /** What happens here happens to the recorder, on its thread, while there is one. */
    template <typename... Arguments>
    void pass(void (RecorderThread::*signal)(Arguments...), void (Recorder::*slot)(Arguments...))
    {
        connect(
            this, signal, &m_place,
            [this, slot](Arguments... arguments) {
                if (m_recorder) {
                    (m_recorder.get()->*slot)(arguments...);
                }
            },
            Qt::QueuedConnection);
    }
    void open();
    void finish();
    void end();
};

} // namespace cnet::gateway

Q_DECLARE_METATYPE(cnet::gateway::TopicNames)
