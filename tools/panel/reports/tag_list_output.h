#pragma once

#include "host/tag/tag.h"
#include "panel/output/monitor_output.h"

#include <QByteArray>
#include <QVector>

namespace cnet::panel {

/**
 * What tags are: as text a table, as CSV a tag file of its own, as JSON an object on a line for
 * each tag, with an entry for each column that says something.
 */
QByteArray tagListOutput(const QVector<Tag> &tags, OutputFormat format);

} // namespace cnet::panel
