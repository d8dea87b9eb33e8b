#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <QString>

namespace cnet {

/**
 * Writes a file as a whole, and puts it in the place of the one that was there; where the disk is
 * full or fails, that one stays as it was.
 *
 * @param file open, nothing written yet
 * @return false: QSaveFile::errorString() says why
 */
bool replaceFile(QSaveFile &file, const QByteArray &content);

/**
 * Whether a path names something else than a file: a folder, a device or a pipe, which to open for
 * reading would take for ever where nobody writes to it.
 *
 * @return false also where there is nothing of this name
 */
bool isNoFile(const QString &path);

} // namespace cnet
