#pragma once

#include "gateway/change/batch_codec.h"
#include "gateway/delivery/trouble.h"
#include "gateway/sinks/sink.h"
#include "gateway/store/ledger.h"

#include "host/time/clock.h"

#include <QObject>

#include <limits>
#include <memory>

namespace cnet::gateway {

/**
 * Brings the batches of the ledger to one sink, and tells the ledger what is safe there. Each sink
 * has its own, so that none waits for another.
 *
 * What waited when the sink became ready is its backlog. Where the sink allows it, what is stored
 * from then on is live and overtakes it: of four batches three are live ones where there are as
 * many, and the fourth is the oldest of the backlog. So neither ever waits for the end of the
 * other. Each comes in order, so that four numbers say how far both are, however long the backlog.
 */
class SinkFeed : public QObject
{
    Q_OBJECT

public:
    /**
     * @param name of the sink, which the ledger knows
     * @param ledger,clock must outlive this object
     */
    SinkFeed(const QString &name, std::unique_ptr<Sink> sink, Ledger &ledger, Clock &clock,
             const Say &say);

    /** Begins, and tries again whenever the sink fails. */
    void start();

    /** The ledger has more. */
    void wake();

    /**
     * Brings what is stored by now, and no more, and has the sink say goodbye when that is safe:
     * left() follows. What it does not take in time stays in the ledger.
     * @param limitMs for all of it; nothing is handed over any more after half of that
     */
    void leave(int limitMs);
    bool isLeaving() const { return m_phase != Phase::Stays; }
    bool hasLeft() const { return m_phase == Phase::Left; }

    /** Tells the sink how a line or station does. */
    void tell(const LineStatus &status) { m_sink->tell(status); }

    const QString &name() const { return m_name; }
    bool isReady() const { return m_isReady; }
    /** Why it failed last, in words, as long as nothing shows that it works; empty: it does. */
    QString trouble() const;
    /** Changes that the sink was handed, those handed again included. */
    qint64 handedValues() const { return m_handedValues; }

    /** Tells the sink what it hears of from now on. */
    void watch(const QVector<TopicNames> &names) { m_sink->watch(names); }

    /** Hands the sink what became of a request of its own. */
    void answer(const WriteAnswer &answer) { m_sink->answer(answer); }

Q_SIGNALS:
    /** The sink was asked to write; its name is in the request. */
    void asked(const cnet::gateway::WriteRequest &request);
    void left();

private:
    enum class Phase { Stays, HandsOn, Waits, SaysGoodbye, Left };

    void begin();
    void takeTurn();
    int backlogPlaces() const;
    void sayGoodbye();
    void handleLimit();
    void handleEnded();
    bool handOn();
    void sayCaughtUp();
    QVector<SinkBatch::Age> turns(int room, int live) const;
    QVector<SinkBatch> chosen(int room);
    QVector<LedgerBatch> readBehind(qint64 number, int most, qint64 upTo);
    bool hasBacklog() const { return m_backlog.handed < m_backlogEnd; }
    void confirm();
    void handleReady();
    void handleSafe(qint64 number);
    void handleFailure(const QString &reason);
    SinkBatch opened(const LedgerBatch &batch, SinkBatch::Age age);

    QString m_name;
    std::unique_ptr<Sink> m_sink;
    Ledger &m_ledger;
    Clock &m_clock;
    BatchReader m_reader;
    Say m_say;
    Trouble m_trouble;
    Trouble m_readTrouble;          ///< of the ledger's file
    std::unique_ptr<Alarm> m_next;  ///< hands on
    std::unique_ptr<Alarm> m_again; ///< begins again
    bool m_isReady = false;

    Phase m_phase = Phase::Stays;
    std::unique_ptr<Alarm> m_limit;                     ///< of the phase
    qint64 m_leftMs = 0;                                ///< on the clock: no phase lasts longer
    qint64 m_last = std::numeric_limits<qint64>::max(); ///< batch that is handed over

    /** How far the batches of one age are: numbers of the last ones. */
    struct Progress
    {
        qint64 handed = 0;
        qint64 safe = 0;
    };
    struct Handed
    {
        qint64 number = 0;
        SinkBatch::Age age = SinkBatch::Age::Live;
    };
    Progress m_live;
    Progress m_backlog;
    qint64 m_backlogEnd = 0;   ///< number of the last batch of the backlog
    bool m_isCaughtUp = false; ///< and the sink was told
    int m_liveInARow = 0;      ///< handed since one of the backlog was
    QVector<Handed> m_waiting; ///< in the order in which they were handed over; not safe yet
    qint64 m_handedValues = 0;
};

} // namespace cnet::gateway
