#pragma once

#include "host/tagfile/tag_file.h"

#include <QByteArray>
#include <QString>

namespace cnet::panel {

/**
 * What was found in a tag file, for people: a line for each mistake and each warning, as compilers
 * have them and editors follow them, and one that sums up.
 */
QByteArray tagCheckText(const QString &path, const TagFile &file);

/** The same as one JSON object on a line. */
QByteArray tagCheckJson(const QString &path, const TagFile &file);

} // namespace cnet::panel
