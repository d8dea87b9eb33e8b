#include "panel/system/output_file.h"

#include <QFile>

#include <sys/stat.h>

#include <cerrno>

namespace cnet::panel {

namespace {

QString obstacle(const QString &path)
{
    if (path.isEmpty()) {
        return QLatin1String("the name is empty");
    }
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) == 0) {
        return S_ISREG(status.st_mode) ? QString() : QLatin1String("it is no regular file");
    }
    return errno == ENOENT ? QString() : qt_error_string(errno);
}

} // namespace

std::unique_ptr<QSaveFile> openOutputFile(const QString &path, QString &error)
{
    auto file = std::make_unique<QSaveFile>(path);
    QString what = obstacle(path);
    if (what.isEmpty() && !file->open(QIODevice::WriteOnly)) {
        what = file->errorString();
    }
    if (what.isEmpty()) {
        return file;
    }
    error = QString::fromLatin1("cannot write %1: %2").arg(path, what);
    return nullptr;
}

} // namespace cnet::panel
