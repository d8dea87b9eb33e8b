#include "gateway/sinks/secret_file.h"

#include <QDir>
#include <QFile>

namespace cnet::gateway {

namespace {

constexpr qint64 kLongest = 4096;

} // namespace

std::optional<QByteArray> readSecret(const Secret &secret, QString &error)
{
    QString path = secret.file;
    if (path.isEmpty() && !secret.credential.isEmpty()) {
        const QString folder = qEnvironmentVariable("CREDENTIALS_DIRECTORY");
        if (folder.isEmpty()) {
            error = QString::fromLatin1("the service manager hands over no credential %1")
                        .arg(secret.credential);
            return std::nullopt;
        }
        path = QDir(folder).filePath(secret.credential);
    }
    if (path.isEmpty()) {
        return QByteArray();
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error =
            QString::fromLatin1("cannot read the password in %1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    QByteArray password = file.read(kLongest);
    while (password.endsWith('\n') || password.endsWith('\r')) {
        password.chop(1);
    }
    return password;
}

} // namespace cnet::gateway
