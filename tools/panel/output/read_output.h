#pragma once

#include "host/jobs/read_job.h"
#include "host/tag/tag.h"
#include "panel/output/monitor_output.h"

#include <QByteArray>
#include <QVector>

namespace cnet::panel {

/**
 * What was read, for standard output: as text a line for each value, as CSV a header and a row for
 * each value, as JSON an object for each item. A value that was not read is a dash, an empty field,
 * or null.
 *
 * @param tags what the results' items stand for, as many; one without a type is shown as words
 */
QByteArray readOutput(const QVector<ReadResult> &results, const QVector<Tag> &tags,
                      OutputFormat format);

/** True where all was read, and no value is implausible. */
bool isAllGood(const QVector<ReadResult> &results, const QVector<Tag> &tags);

} // namespace cnet::panel
