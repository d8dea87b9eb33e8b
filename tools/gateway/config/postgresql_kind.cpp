#include "gateway/config/postgresql_kind.h"

#include "gateway/config/secret_keys.h"

#include <QDir>
#include <QRegularExpression>
#include <QStringList>

namespace cnet::gateway {

namespace {

constexpr qint64 kSecondMs = 1000;
constexpr qint64 kLongestAgeMs = 36500LL * 24 * 60 * 60 * kSecondMs;
constexpr qint64 kDayMs = 24LL * 60 * 60 * kSecondMs;
constexpr qint64 kLongestTimeoutMs = 600 * kSecondMs;

void readSsl(ConfigTable &table, const QString &folder, PostgresqlSettings &settings)
{
    const auto file = [&](const char *key) {
        const auto path = table.text(key);
        return path ? QDir(folder).filePath(*path) : QString();
    };
    settings.rootCertificate = file("sslrootcert");
    settings.certificate = file("sslcert");
    settings.key = file("sslkey");
    const QStringList modes{QLatin1String("disable"), QLatin1String("prefer"),
                            QLatin1String("require"), QLatin1String("verify-ca"),
                            QLatin1String("verify-full")};
    constexpr int kPrefer = 1;
    constexpr int kVerifyCa = 3;
    constexpr int kVerifyFull = 4;
    const bool isVerifying = !settings.rootCertificate.isEmpty();
    const int mode = table.choice("sslmode", modes, isVerifying ? kVerifyFull : kPrefer);
    settings.sslMode = modes.at(mode);
    if (isVerifying && mode < kVerifyCa) {
        table.complain("sslrootcert", QLatin1String("it is looked at with sslmode \"verify-ca\" or "
                                                    "\"verify-full\" only"));
    }
    if (settings.certificate.isEmpty() != settings.key.isEmpty()) {
        table.complain(settings.key.isEmpty() ? "sslcert" : "sslkey",
                       QLatin1String("sslcert and sslkey are needed together"));
    }
}

} // namespace

PostgresqlSettings readPostgresql(ConfigTable &table, const QString &folder)
{
    PostgresqlSettings settings;
    settings.host = table.text("host").value_or(QLatin1String("localhost"));
    settings.port = table.number("port", 1, 65535, settings.port);
    settings.database = table.neededText("database", "database = \"plant\"").value_or(QString());
    settings.user = table.text("user").value_or(QString());
    settings.password = readSecretKeys(table, folder);
    readSsl(table, folder, settings);
    settings.schema = table.text("schema").value_or(QLatin1String("cnet"));
    static const QRegularExpression plain(QLatin1String("\\A[a-z_][a-z0-9_]{0,39}\\z"));
    if (!plain.match(settings.schema).hasMatch()) {
        table.complain("schema",
                       QLatin1String("expected at most 40 of a to z, 0 to 9 and \"_\", no "
                                     "digit first"));
    }
    settings.isCreating = table.truth("create", settings.isCreating);
    settings.ageMs = table.duration("age", kDayMs, kLongestAgeMs, settings.ageMs);
    settings.timeoutMs = static_cast<int>(
        table.duration("timeout", kSecondMs, kLongestTimeoutMs, settings.timeoutMs));
    return settings;
}

} // namespace cnet::gateway
