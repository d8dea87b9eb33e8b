#pragma once

#include "host/tag/tag_set.h"
#include "host/tagfile/tag_file.h"
#include "panel/commands/commands.h"

#include <QString>

#include <optional>

namespace cnet::panel {

/** Mistakes and warnings of a tag file that are told one by one, unless something else is asked. */
constexpr int kUsualFindings = 100;

/**
 * Reads a tag file, whatever is wrong with it.
 *
 * @param station of tags that name none
 * @param limit mistakes and warnings that are kept
 * @param error receives one sentence when the result is empty: the file cannot be read
 */
std::optional<TagFile> readTagFile(const Invocation &invocation, const QString &path, int station,
                                   int limit, QString &error);

/**
 * Reads the tags of a file, for a command that works with them.
 * @param error receives one sentence when the result is empty: the first mistake, and how many more
 * there are
 */
std::optional<TagSet> readTagSet(const Invocation &invocation, const QString &path, int station,
                                 QString &error);

} // namespace cnet::panel
