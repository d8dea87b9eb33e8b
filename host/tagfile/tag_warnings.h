#pragma once

#include "host/tagfile/tag_columns.h"
#include "host/text/finding.h"

#include <QVector>

#include <functional>

namespace cnet {

/** Where a field of a tag stands: all of a finding but its text. @param tag index */
using TagFieldPlace = std::function<Finding(int tag, TagColumn column)>;

/**
 * Looks for what is allowed and seldom meant: tags that overlap, a value that reaches into the next
 * tag, names that differ only by case, a station that no other tag is on. A word and its bits may
 * have tags of their own.
 */
void warnOfTags(const QVector<Tag> &tags, const TagFieldPlace &place, Findings &warnings);

} // namespace cnet
