#pragma once

#include <QByteArray>
#include <QSaveFile>

namespace cnet {

/**
 * Writes a file as a whole, and puts it in the place of the one that was there; where the disk is
 * full or fails, that one stays as it was.
 *
 * @param file open, nothing written yet
 * @return false: QSaveFile::errorString() says why
 */
bool replaceFile(QSaveFile &file, const QByteArray &content);

} // namespace cnet
