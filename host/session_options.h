#pragma once

#include "host/exchange/repeated_answers.h"
#include "host/jobs/write_job.h"
#include "host/link/first_open.h"
#include "host/link/link_address.h"
#include "host/schedule/silent_station.h"

namespace cnet {

/** What SessionOptions::line is. */
enum class LineSpeed {
    Known,   ///< how the line is: its load can be told in percent
    Assumed, ///< what time-outs are computed with, since nobody knows
};

/** How a session talks. What is left alone suits a PLC on its usual line. */
struct SessionOptions
{
    /** Words of one request, 1 to 255; a MASTER-K refuses more than 60. */
    int blockWords = 60;
    /** How often a request is sent before it is given up, 1 to 1000. */
    int attempts = 3;
    /** How long an answer may take in milliseconds, 1 or more; 0: found out for each station. */
    int timeoutMs = 0;
    /** A round of cyclic reads begins no sooner than this after the one before, in milliseconds; 0:
     * at once. */
    int intervalMs = 100;
    /** Age in milliseconds at which a value is stale; 0: three rounds, two seconds at least. */
    int staleMs = 0;
    /** Of a serial line, or of the one behind a TCP port: what frames take. */
    LineSettings line;
    LineSpeed lineSpeed = LineSpeed::Assumed;
    /** Whether an answer that is a copy of the one before it is believed at once. */
    RepeatedAnswers repeatedAnswers = RepeatedAnswers::Confirm;
    /** Jobs for a station that is known to be silent. */
    SilentStation silentStation = SilentStation::Greet;
    /** Writes that were not sent yet when the line is lost. */
    WriteJob::OnLoss pendingWrites = WriteJob::OnLoss::Drop;
    /** A line that cannot be opened at the start. */
    FirstOpen firstOpen = FirstOpen::Once;
};

} // namespace cnet
