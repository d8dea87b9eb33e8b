#pragma once

#include <QMimeData>
#include <QStringList>

#include <memory>

namespace cnet::view {

/** What is dragged from the table into the trend, or copied: the names of tags. */
std::unique_ptr<QMimeData> mimeOfTags(const QStringList &names);

/** @return the names; empty where it is something else */
QStringList tagsOfMime(const QMimeData *data);

} // namespace cnet::view
