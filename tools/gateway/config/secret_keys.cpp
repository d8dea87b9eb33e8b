#include "gateway/config/secret_keys.h"

#include <QDir>

namespace cnet::gateway {

Secret readSecretKeys(ConfigTable &table, const QString &folder)
{
    Secret secret;
    if (const auto file = table.text("password_file")) {
        secret.file = QDir(folder).filePath(*file);
    }
    secret.credential = table.text("password_credential").value_or(QString());
    if (!secret.file.isEmpty() && !secret.credential.isEmpty()) {
        table.complain("password_credential", QLatin1String("there is a password_file as well"));
    }
    if (secret.credential.contains(QLatin1Char('/'))) {
        table.complain("password_credential", QLatin1String("expected a name without a folder"));
    }
    return secret;
}

} // namespace cnet::gateway
