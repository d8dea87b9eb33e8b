#pragma once

#include <QSaveFile>
#include <QString>

#include <memory>

namespace cnet::panel {

/**
 * Opens a file that is to be replaced; its content stays until commit(). Errors that can be
 * detected beforehand are reported here, before a PLC is read.
 *
 * A device or a pipe is refused, since a file would take its place.
 *
 * @param error receives one sentence when the result is null
 */
std::unique_ptr<QSaveFile> openOutputFile(const QString &path, QString &error);

} // namespace cnet::panel
