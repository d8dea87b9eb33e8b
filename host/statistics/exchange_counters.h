#pragma once

#include "host/exchange/exchange_report.h"
#include "host/statistics/response_histogram.h"

#include <QMap>

namespace cnet {

/** What became of requests: of one station's, or of those for one block. */
struct ExchangeCounters
{
    qint64 frames = 0;        ///< requests sent, each repetition counted
    qint64 fences = 0;        ///< of these the host's own, which only ask for a sign of life
    qint64 answers = 0;       ///< good answers
    qint64 retries = 0;       ///< requests that were sent again
    qint64 bad = 0;           ///< answers that could not be used, those cut short included
    qint64 badChecks = 0;     ///< of these the ones whose block check was wrong
    qint64 timeouts = 0;      ///< requests to which nothing came
    qint64 refusals = 0;      ///< requests that the station refused
    qint64 late = 0;          ///< answers that came after their time-out
    qint64 sentBytes = 0;     ///< of all these requests
    qint64 receivedBytes = 0; ///< of what came for them in time, unusable bytes included

    /**
     * The refusals by the PLC's error code. Of a station that invents them the first kMostCodes
     * are told apart; the others are in `refusals` only.
     */
    QMap<int, qint64> refusalsByCode;
    static constexpr int kMostCodes = 32;

    /**
     * Response times: from the first sending of a request that is still open until its answer was
     * complete, refusals included. What was not answered in time is not among them.
     */
    ResponseHistogram times;

    /** Counts one request that ended; one that never went out counts as nothing. */
    void note(const ExchangeReport &report);

    /** Adds what another one counted. */
    void add(const ExchangeCounters &other);
};

} // namespace cnet
