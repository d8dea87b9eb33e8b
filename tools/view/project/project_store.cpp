#include "view/project/project_store.h"

#include "host/text/whole_file.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace cnet::view {

namespace {

QString cannotRead(const QString &path, const QString &why)
{
    return QCoreApplication::translate("ProjectStore", "Cannot read %1: %2").arg(path, why);
}

} // namespace

QString previousOf(const QString &path)
{
    return path + QLatin1Char('~');
}

std::optional<QByteArray> readWholeFile(const QString &path, qint64 most, QString &error)
{
    if (isNoFile(path)) {
        error = cannotRead(path, QCoreApplication::translate("ProjectStore", "it is no file"));
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = cannotRead(path, file.errorString());
        return std::nullopt;
    }
    const QByteArray bytes = file.read(most + 1);
    if (bytes.size() > most) {
        error = cannotRead(
            path,
            QCoreApplication::translate("ProjectStore", "it is longer than %1 bytes").arg(most));
        return std::nullopt;
    }
    if (file.error() != QFileDevice::NoError) {
        error = cannotRead(path, file.errorString());
        return std::nullopt;
    }
    return bytes;
}

bool writeWholeFile(const QString &path, const QByteArray &bytes, QString &error)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && replaceFile(file, bytes)) {
        return true;
    }
    error = QCoreApplication::translate("ProjectStore", "Cannot write %1: %2")
                .arg(path, file.errorString());
    return false;
}

std::optional<Project> load(const QString &path, QString &error)
{
    const auto bytes = readWholeFile(path, kMostProjectBytes, error);
    if (!bytes) {
        return std::nullopt;
    }
    QString why;
    auto project = parseProject(*bytes, why);
    if (!project) {
        error = QCoreApplication::translate("ProjectStore", "Cannot open %1: %2").arg(path, why);
    }
    return project;
}

bool save(const QString &path, const Project &project, QString &error)
{
    const QByteArray bytes = toBytes(project);
    if (bytes.size() > kMostProjectBytes) {
        error = QCoreApplication::translate("ProjectStore",
                                            "Cannot write %1: the project is longer than %2 bytes")
                    .arg(path)
                    .arg(kMostProjectBytes);
        return false;
    }
    if (QFileInfo::exists(path)) {
        const auto before = readWholeFile(path, kMostProjectBytes, error);
        if (!before) {
            return false;
        }
        // Saving twice must not lose what was there before the first time.
        if (*before == bytes) {
            return true;
        }
        if (!writeWholeFile(previousOf(path), *before, error)) {
            return false;
        }
    }
    return writeWholeFile(path, bytes, error);
}

} // namespace cnet::view
