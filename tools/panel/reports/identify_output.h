#pragma once

#include "host/jobs/read_job.h"
#include "host/tag/plausible_readings.h"
#include "panel/output/monitor_output.h"

#include <QByteArray>

namespace cnet::panel {

/** Which readings of words are printed as text. */
enum class Readings {
    Plausible,
    All,
};

/**
 * All ways to take the words of an item, for standard output. As text: the words, and a line for
 * each reading with the item to paste; as JSON an object for each reading, as CSV a row, plausible
 * or not.
 *
 * @param result of an item of words, all of which were read
 */
QByteArray identifyOutput(const ReadResult &result, OutputFormat format, Readings readings);

} // namespace cnet::panel
