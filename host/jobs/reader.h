#pragma once

#include "host/driver/driver_session.h"
#include "host/exchange/exchange.h"
#include "host/address/item.h"

#include <QObject>
#include <QSet>
#include <QVector>

namespace cnet {

/** An item that was read once. */
struct ReadResult
{
    Item item;
    QVector<quint16> values; ///< words; 0 or 1 for bits and contacts
    QVector<bool> known;     ///< of each value: it was read
    QString failure;         ///< why a part of it was not; empty: all of it was

    bool isGood() const { return failure.isEmpty(); }
};

/**
 * Reads items once, piece by piece, each with a request of its own.
 *
 * Words are read as the driver's one-off readings. Bits and contacts cannot be: of a bit register
 * the driver queues nothing and never says so, of contacts it reads others than meant. They are
 * read as cyclic blocks instead, which are taken away again after one reading.
 *
 * It takes the session's change handler, and nobody else may set the monitored addresses while it
 * runs.
 */
class Reader : public QObject
{
    Q_OBJECT

public:
    /**
     * @param driver,exchange must outlive this object
     * @param blockWords words of a block read
     */
    Reader(DriverSession &driver, Exchange &exchange, int blockWords, QObject *parent = nullptr);

    /** Begins to read one item or more, whose addresses were checked; done() follows. */
    void start(const QVector<Item> &items);

    /** Of the items in their order; what is still to be read counts as not known. */
    const QVector<ReadResult> &results() const { return m_results; }

    /** Everything that is not read yet fails for this reason; without done(). */
    void giveUp(const QString &reason);

Q_SIGNALS:
    void done();

private:
    struct Task
    {
        int item = 0;
        Piece piece;
    };

    enum class EndSignal { None, Read, Failed };

    void handleChange(int station, const QString &name, int address);
    void handleEnded(const ExchangeReport &report);
    void settle(bool good, const QString &failure);
    void next();
    void request(const Task &task);
    void fail(const Task &task, const QString &failure);

    DriverSession &m_driver;
    Exchange &m_exchange;
    int m_blockWords;
    QVector<ReadResult> m_results;
    QVector<Task> m_tasks;
    int m_current = -1; ///< index of the task that is underway; its size: all are settled
    EndSignal m_endSignal = EndSignal::None;
    QSet<int> m_silentStations;
};

} // namespace cnet
