#pragma once

#include <QSaveFile>
#include <QString>

#include <memory>

namespace cnet::panel {

/**
 * Opens a file that is to be replaced: what stands in it stays until commit(). All that can be
 * known beforehand is found here, before a PLC is asked for what the file is to hold.
 *
 * A device or a pipe is refused, since a file would take its place.
 *
 * @param error receives one sentence when the result is null
 */
std::unique_ptr<QSaveFile> openOutputFile(const QString &path, QString &error);

} // namespace cnet::panel
