#pragma once

#include "gateway/change/change.h"
#include "gateway/change/line_status.h"
#include "gateway/change/topic_template.h"
#include "gateway/change/write_request.h"

#include <QObject>
#include <QString>
#include <QVector>

namespace cnet::gateway {

/** A batch of the ledger with its changes, as a sink gets it. */
struct SinkBatch
{
    enum class Age {
        Live,   ///< it comes as soon as it was stored
        Backlog ///< it had to wait while the sink was away; live batches may overtake it
    };

    qint64 number = 0; ///< rising; the same batch comes again with the same number
    QVector<Change> changes;
    Age age = Age::Live;
    bool isOfThisRun = true; ///< stored since the gateway was started, and not left by a run before
};

/**
 * Somewhere that changes are brought to. It is told to begin, is handed batches, and says which of
 * them are safe there. After failed() it waits for begin(), and whatever is not safe comes again,
 * and what had overtaken it, too: of a batch that comes twice it keeps one, where it can.
 *
 * All of it happens on one thread; a sink that has to wait for somebody waits for events.
 */
class Sink : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /**
     * Connects, opens...: ready() or failed() follows, at once or later.
     * @param ledger what the numbers belong to: with another one they begin anew
     */
    virtual void begin(const QString &ledger) = 0;

    /**
     * @param batches in order() behind those that it has; only between ready() and failed()
     */
    virtual void take(const QVector<SinkBatch> &batches) = 0;

    /** In which order batches are handed over between ready() and failed(). */
    enum class Order {
        OfLedger, ///< by their numbers: of a sink that keeps a history, or one number of what it
                  ///< has
        LiveFirst ///< live ones by their numbers, and beside them a backlog by its numbers
    };
    virtual Order order() const { return Order::OfLedger; }

    /** What waited when it became ready has all been handed over: once behind each ready(). */
    virtual void caughtUp() {}

    /**
     * Changes between the batches that it was handed and those that follow are lost: what is newest
     * of a tag there may be outdated.
     */
    virtual void missed() {}

    /** Batches that it may have without having called them safe, 1 or more. */
    virtual int window() const = 0;

    /**
     * Is told how a line or station does now, also while it is not ready. What is not told on at
     * once is not kept for later: only the newest counts. Sinks without subscribers have no use for
     * it.
     */
    virtual void tell(const LineStatus & /*status*/) {}

    /**
     * Is told of what it hears from now on: of lines, of their stations, and of their tags. What it
     * has somebody keep of others is not true any more.
     */
    virtual void watch(const QVector<TopicNames> & /*names*/) {}

    /** What became of a request that it asked(). */
    virtual void answer(const WriteAnswer & /*answer*/) {}

    /** Is handed nothing more, and says goodbye where somebody listens: ended() follows. */
    virtual void end() { Q_EMIT ended(); }

Q_SIGNALS:
    void ready();
    /** This batch and all that were handed over before it outlive a power cut now. */
    void safe(qint64 number);
    /** Something that people are to know, and that keeps nothing from working. One line. */
    void noticed(const QString &text);
    /** @param reason in words, the same as long as it is the same trouble */
    void failed(const QString &reason);
    /** After end(): it may go. */
    void ended();
    /** Somebody wants to write. Exactly one answer() follows, also much later. */
    void asked(const cnet::gateway::WriteRequest &request);
};

} // namespace cnet::gateway
