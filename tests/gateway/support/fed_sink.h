#pragma once

#include "gateway/delivery/sink_feed.h"
#include "gateway/support/changes.h"
#include "host/support/virtual_clock.h"

#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <utility>

namespace cnet::gateway {

inline QString sinkName()
{
    return QLatin1String("sink");
}

/** A sink that looks at the order of what it is handed, and calls it safe when it is told to. */
class OrderlySink : public Sink
{
public:
    explicit OrderlySink(Order order, int window)
        : m_order(order)
        , m_window(window)
    {}

    enum class Beginning { Ready, Fails, Later };
    Beginning beginning = Beginning::Ready;
    QString fault;           ///< the first that was seen
    QVector<qint64> waiting; ///< handed and not safe
    QString ages;            ///< "L" and "B" of all that was handed since it became ready
    QSet<qint64> safeOnes;
    bool isReady = false;
    bool confirmsAtOnce = false;
    bool saysGoodbye = true; ///< else it takes its time

    void begin(const QString & /*ledger*/) override
    {
        if (beginning == Beginning::Ready) {
            becomeReady();
        } else if (beginning == Beginning::Fails) {
            Q_EMIT failed(QLatin1String("no broker"));
        }
    }

    void becomeReady()
    {
        m_live = 0;
        m_backlog = 0;
        ages.clear();
        waiting.clear();
        isReady = true;
        Q_EMIT ready();
    }

    void fail()
    {
        isReady = false;
        Q_EMIT failed(QLatin1String("broker away"));
    }

    void take(const QVector<SinkBatch> &batches) override
    {
        for (const SinkBatch &batch : batches) {
            const bool isLive = batch.age == SinkBatch::Age::Live;
            qint64 &last = isLive ? m_live : m_backlog;
            expect(isReady, "handed while it is not ready");
            expect(batch.number > last, "out of order among those of its age");
            // A batch that a later one overtook is told to be old.
            expect(!isLive || batch.number > m_backlog, "a live one is older than the backlog");
            expect(m_order == Order::LiveFirst || batch.number > std::max(m_live, m_backlog),
                   "not in the order of the ledger");
            expect(batch.changes.size() == 1 &&
                       std::get<qint64>(batch.changes.first().value) == batch.number,
                   "not what was stored");
            last = batch.number;
            ages.append(QLatin1Char(isLive ? 'L' : 'B'));
            waiting.append(batch.number);
        }
        expect(waiting.size() <= m_window, "more than the window");
        if (confirmsAtOnce) {
            callSafe(int(waiting.size()));
        }
    }

    void end() override
    {
        expect(!isEnded, "ended twice");
        isEnded = true;
        if (saysGoodbye) {
            Q_EMIT ended();
        }
    }
    bool isEnded = false;

    /** The first ones that were handed. */
    void callSafe(int count)
    {
        const qint64 last = waiting.at(count - 1);
        for (const qint64 number : waiting.mid(0, count)) {
            safeOnes.insert(number);
        }
        waiting = waiting.mid(count);
        Q_EMIT safe(last);
    }

    Order order() const override { return m_order; }
    int window() const override { return m_window; }

private:
    void expect(bool isTrue, const char *otherwise)
    {
        if (!isTrue && fault.isEmpty()) {
            fault = QLatin1String(otherwise);
        }
    }

    const Order m_order;
    const int m_window;
    qint64 m_live = 0;
    qint64 m_backlog = 0;
};

/** A ledger with a sink, which may be killed and started again. */
struct FedSink
{
    explicit FedSink(Sink::Order itsOrder, int itsWindow, const LedgerBounds &most = LedgerBounds())
        : order(itsOrder)
        , window(itsWindow)
        , bounds(most)
    {
        start({});
    }

    void start(QSet<qint64> safeOnes)
    {
        feed.reset();
        ledger = std::make_unique<Ledger>(clock);
        if (!ledger
                 ->open(directory.filePath(QLatin1String("ledger")), Database::Durability::Normal,
                        bounds, {sinkName()})
                 .isNone()) {
            qFatal("no ledger");
        }
        auto own = std::make_unique<OrderlySink>(order, window);
        sink = own.get();
        sink->safeOnes = std::move(safeOnes);
        feed = std::make_unique<SinkFeed>(sinkName(), std::move(own), *ledger, clock,
                                          [this](const QString &line) { said.append(line); });
        feed->start();
    }

    void kill()
    {
        const QString fault = sink->fault;
        start(sink->safeOnes);
        sink->fault = fault;
    }

    /** Also keeps what was confirmed. */
    void store(int count)
    {
        QVector<LedgerBatch> batches;
        for (int i = 0; i < count; ++i) {
            batches.append(batchWith({++stored}));
        }
        if (!ledger->commit(batches).isNone()) {
            qFatal("not stored");
        }
        feed->wake();
    }

    /** Empty: nothing left the ledger before it and all before it were safe. */
    QString fault()
    {
        qint64 prefix = 0;
        while (sink->safeOnes.contains(prefix + 1)) {
            ++prefix;
        }
        const QVector<LedgerBatch> kept = ledger->after(0, 1000000);
        const qint64 first = kept.isEmpty() ? stored + 1 : kept.first().number;
        if (first > prefix + 1) {
            return QString::fromLatin1("%1 was removed and is not safe").arg(prefix + 1);
        }
        return kept.size() == stored + 1 - first ? sink->fault
                                                 : QLatin1String("one is missing in between");
    }

    const Sink::Order order;
    const int window;
    const LedgerBounds bounds;
    const QTemporaryDir directory;
    VirtualClock clock;
    std::unique_ptr<Ledger> ledger;
    std::unique_ptr<SinkFeed> feed;
    OrderlySink *sink = nullptr; ///< the feed's
    qint64 stored = 0;
    QStringList said;
};

} // namespace cnet::gateway
