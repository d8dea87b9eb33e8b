#pragma once

#include "host/address/register_catalog.h"
#include "host/exchange/exchange_report.h"
#include "host/jobs/read_job.h"
#include "host/schedule/poll_set.h"
#include "host/schedule/station_health.h"
#include "host/time/clock.h"

#include <QObject>
#include <QSet>

namespace cnet {

/** How monitored items are read. */
struct PollSettings
{
    int blockWords = 60;  ///< words of a request
    int intervalMs = 100; ///< a round begins no sooner than this after the one before
    int staleMs = 0;      ///< age at which a value is stale; 0: three rounds, two seconds at least
};

/**
 * Runs the cyclic reads: which blocks there are, when a round begins, and what becomes of a block
 * that is refused. Such a block is read once item by item, which belongs to the round; what the
 * station refuses by itself is left out, and costs nobody else.
 */
class Poller : public QObject
{
    Q_OBJECT

public:
    /** All but `settings` must outlive this object. */
    Poller(DriverCore &driver, const RegisterCatalog &registers, const StationHealth &health,
           const Clock &clock, const PollSettings &settings, QObject *parent = nullptr);

    void add(Monitor *monitor);

    /** The driver's cyclic reads are no longer those of the monitors. */
    void disturb() { m_mergeDue = true; }

    /** Gives the driver the right cyclic reads, if it has others; while nothing is in flight. */
    void prepare();

    /** True when the next block may be asked for. After prepare(). */
    bool isDue() const;

    /** When the next round begins; -1: there is nothing to read. */
    qint64 nextMs() const;

    /** A block of the cyclic reads ended for good. @param changed the driver reported changes */
    void blockEnded(const ExchangeReport &report, bool changed);

    /** Words or a contact were read by a job; monitors may show them. */
    void rangeRead(const AddressRange &range);

    void stationFailed(int station, const Failure &failure);
    void stationBack(int station);
    void lineOpened();
    void lineLost();
    void writeBegun(const Item &item, const QVector<quint16> &values);
    void writeEnded(const Item &item, const QVector<quint16> &values, Confirmation confirmation);
    /** Time passed. */
    void look();
    /** Monitors tell their changes. */
    void tell();

    const PollSet &items() const { return m_set; }
    int rounds() const { return m_rounds; }
    Monitor::Surroundings surroundings() const;

Q_SIGNALS:
    void roundEnded(int rounds);
    /** A job is to be done for this object, which deletes it. */
    void jobWanted(cnet::Job *job);

private:
    void lineChanged();
    void sortOut(const AddressRange &range, int code);
    void handleSortedOut(const AddressRange &range);
    void finishRound();
    QList<KEY_ADDRESS> keysSince(qint64 beganMs) const;
    void mark(const QVector<PollSet::Place> &places, const QVector<ReadResult> &results);

    DriverCore &m_driver;
    const RegisterCatalog &m_registers;
    const StationHealth &m_health;
    const Clock &m_clock;
    PollSettings m_settings;
    PollSet m_set;
    bool m_mergeDue = true;
    bool m_lineOpen = false;
    qint64 m_openSinceMs = 0;
    int m_blocks = 0; ///< of a round
    int m_blocksLeft = 0;
    bool m_restOfRound = false; ///< the driver reads only what was not read yet in this round
    int m_rounds = 0;
    qint64 m_roundBeganMs = 0;
    qint64 m_nextRoundMs = 0;
    qint64 m_roundTookMs = 0;
    bool m_roundWaits = false;          ///< its blocks ended; some are still sorted out
    QHash<AddressRange, int> m_refused; ///< how often a block was refused
    QSet<AddressRange> m_sorting;       ///< refused blocks whose items are being read one by one
};

} // namespace cnet
