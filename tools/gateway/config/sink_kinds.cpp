#include "gateway/config/sink_kinds.h"

#include "gateway/config/mqtt_kind.h"
#include "gateway/config/postgresql_kind.h"
#include "gateway/config/sparkplug_kind.h"

#include <QDir>

#include <array>

namespace cnet::gateway {

namespace {

constexpr qint64 kSecondMs = 1000;
constexpr qint64 kLongestAgeMs = 36500LL * 24 * 60 * 60 * kSecondMs;

SinkSettings readSqlite(ConfigTable &table, const ConfigFolders &folders)
{
    SqliteSettings settings;
    settings.path =
        QDir(folders.state).filePath(table.text("path").value_or(QLatin1String("history.sqlite")));
    settings.ageMs = table.duration("age", kSecondMs, kLongestAgeMs, settings.ageMs);
    settings.bytes = table.size("size", settings.bytes);
    return settings;
}

SinkSettings readMqttKind(ConfigTable &table, const ConfigFolders &folders)
{
    return readMqtt(table, folders);
}

SinkSettings readPostgresqlKind(ConfigTable &table, const ConfigFolders &folders)
{
    return readPostgresql(table, folders.config);
}

SinkSettings readSparkplugKind(ConfigTable &table, const ConfigFolders &folders)
{
    return readSparkplug(table, folders);
}

struct SinkKind
{
    const char *name;
    SinkSettings (*read)(ConfigTable &table, const ConfigFolders &folders);
};

// The first one is the usual one.
constexpr std::array<SinkKind, 4> kKinds{{{"sqlite", readSqlite},
                                          {"mqtt", readMqttKind},
                                          {"postgresql", readPostgresqlKind},
                                          {"sparkplug", readSparkplugKind}}};

} // namespace

std::optional<SinkSettings> readSink(ConfigTable &table, const ConfigFolders &folders)
{
    QStringList names;
    for (const SinkKind &kind : kKinds) {
        names.append(QLatin1String(kind.name));
    }
    if (table.name().contains(QLatin1Char('/'))) {
        table.complain(QLatin1String("expected a name without '/': files in the state's folder "
                                     "begin with it"));
    }
    const int index = table.choice("kind", names, table.has("kind") ? -1 : 0);
    if (index < 0) {
        return std::nullopt;
    }
    SinkSettings settings = kKinds.at(static_cast<size_t>(index)).read(table, folders);
    table.finish();
    return settings;
}

SinkConfig usualSink(const QString &stateFolder)
{
    SqliteSettings settings;
    settings.path = QDir(stateFolder).filePath(QLatin1String("history.sqlite"));
    return {QLatin1String("history"), settings, stateFolder};
}

} // namespace cnet::gateway
