#pragma once

#include "host/jobs/read_job.h"
#include "panel/output/monitor_output.h"

#include <QByteArray>
#include <QVector>

namespace cnet::panel {

/**
 * What was read, for standard output: as text a line for each value, as CSV a header and a row for
 * each value, as JSON an object for each item. A value that was not read is a dash, an empty field,
 * or null.
 */
QByteArray readOutput(const QVector<ReadResult> &results, OutputFormat format);

} // namespace cnet::panel
