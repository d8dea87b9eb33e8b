#pragma once

#include "gateway/store/database.h"
#include "gateway/store/ledger_identity.h"
#include "gateway/store/store_rate.h"

#include "host/time/clock.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <limits>
#include <optional>

namespace cnet::gateway {

/** Changes that are handed on together. */
struct LedgerBatch
{
    qint64 number = 0; ///< given by the ledger: 1 or more, rising, never given twice
    int values = 0;    ///< how many changes it has
    QByteArray body;   ///< the changes themselves, whatever their form
};

/** What the ledger may grow to; the oldest batches make room. */
struct LedgerBounds
{
    qint64 bytes = 1024LL * 1024 * 1024;       ///< of all batches, 1 or more
    qint64 ageMs = 30LL * 24 * 60 * 60 * 1000; ///< of the oldest batch, 1 or more
};

/** Batches with numbers above one, up to another. */
struct BatchRange
{
    qint64 after = 0;
    qint64 upTo = 0;
};

/** How far one sink is. */
struct LedgerSink
{
    qint64 confirmed = 0;     ///< number of the last batch that is safe there
    qint64 droppedValues = 0; ///< changes that the bounds took from it, ever
    BatchRange ahead;         ///< safe there, too: they overtook others; not kept in the file
};

/** For people and their meters. */
struct LedgerState
{
    qint64 batches = 0;
    qint64 values = 0;
    qint64 bytes = 0;       ///< that count against the bound
    qint64 oldestAgeMs = 0; ///< 0 when there is no batch
    QMap<QString, LedgerSink> sinks;
    /** Until a bound is reached when nothing is confirmed any more; not known in the first minute.
     */
    std::optional<double> hoursLeft;
};

/**
 * What was seen and is not safe everywhere yet: batches of changes in a file, in order. A batch
 * leaves it when every sink has confirmed it, or when a bound takes it; that is counted.
 *
 * Confirmations are kept with the next commit: losing some costs sending a batch twice, and no
 * write to the disk of their own. Ages are told by the running of this process and, for the time it
 * did not run, by the wall clock, so that a step of the wall clock drops nothing.
 *
 * All calls are made on one thread; commit() waits for the disk.
 */
class Ledger
{
public:
    explicit Ledger(Clock &clock)
        : m_clock(clock)
    {}

    /**
     * Opens the file, or makes it.
     * @param sinks their names; a new one is handed what comes from now on, and one that is not
     * named any more is forgotten with what it had not confirmed
     */
    StoreError open(const QString &path, Database::Durability durability,
                    const LedgerBounds &bounds, const QStringList &sinks,
                    const QString &boot = currentBoot());

    /** From the next commit() on. */
    void setBounds(const LedgerBounds &bounds) { m_bounds = bounds; }

    /** As open() takes them; the file knows it with the next commit(). */
    void setSinks(const QStringList &sinks);

    /** Stays the same as long as a number means one batch for ever: see readIdentity(). */
    QString identity() const { return m_identity; }

    /**
     * Stores batches, gives them their numbers, and keeps what was confirmed.
     * @return what failed; then nothing was stored, and the same may be tried again
     */
    StoreError commit(QVector<LedgerBatch> &batches);

    /** Notes that a sink has everything up to this number. Lower numbers change nothing. */
    void confirm(const QString &sink, qint64 number);

    /**
     * Notes that a sink has more than it confirmed, which leaves the ledger when all before it has
     * come there as well. Meanwhile a bound that takes it takes nothing from the sink.
     */
    void noteAhead(const QString &sink, const BatchRange &ahead);

    /**
     * The batches behind a number, oldest first; fewer where the file cannot be read just now.
     * @param most of them
     * @param upTo the last one
     */
    QVector<LedgerBatch> after(qint64 number, int most,
                               qint64 upTo = std::numeric_limits<qint64>::max());

    /** Number of the batch that was stored last; 0: there never was one. */
    qint64 last() const { return m_totals.last; }

    /** Number of the last batch that has left it; all behind are there, up to last(). */
    qint64 lastGone() const { return m_totals.last - m_totals.batches; }

    /** The same when it was opened: what is there up to it was stored by a run before. */
    qint64 lastBefore() const { return m_lastBefore; }

    /** Number of the last batch that a sink has confirmed. */
    qint64 confirmed(const QString &sink) const { return m_sinks.value(sink).confirmed; }

    /** Batches that are not safe at a sink yet. */
    qint64 waitingBatches(const QString &sink) const;
    /** Age of the oldest of these; 0: there is none. */
    qint64 waitingMs(const QString &sink);

    LedgerState state() const;

private:
    struct Totals
    {
        qint64 batches = 0;
        qint64 values = 0;
        qint64 bytes = 0;
        qint64 oldestAtMs = 0; ///< on ageNowMs(); without meaning where there is no batch
        qint64 last = 0;       ///< number that was given last
    };

    StoreError prepare(Database::Durability durability, const QStringList &sinks,
                       const QString &boot);
    StoreError readSettings();
    StoreError keepSinks(const QStringList &sinks);
    StoreError keepClock();
    StoreError insert(QVector<LedgerBatch> &batches);
    StoreError keepConfirmations(const QMap<QString, LedgerSink> &sinks);
    qint64 lastBeyondBounds();
    StoreError makeRoom(QMap<QString, LedgerSink> &sinks);
    StoreError countDropped(qint64 upTo, QMap<QString, LedgerSink> &sinks);
    StoreError remove(qint64 upTo);
    StoreError readTotals();
    qint64 ageNowMs() const;

    Clock &m_clock;
    Database m_database;
    LedgerBounds m_bounds;
    QString m_identity;
    QMap<QString, LedgerSink> m_sinks; ///< as noted; the file may be a commit behind
    Totals m_totals;
    qint64 m_lastBefore = 0;
    qint64 m_ageZeroMs = 0; ///< ageNowMs() when nowMs() was 0
    StoreRate m_rate;
};

} // namespace cnet::gateway
