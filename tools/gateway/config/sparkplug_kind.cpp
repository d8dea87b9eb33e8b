#include "gateway/config/sparkplug_kind.h"

#include "gateway/config/mqtt_kind.h"

#include <QDir>

#include <optional>

namespace cnet::gateway {

namespace {

constexpr int kUsualSpreadMs = 5000;
constexpr int kLongestSpreadMs = 600000;

QString checkedId(ConfigTable &table, const char *key, const std::optional<QString> &id)
{
    const QString misfit = id ? sparkplugIdMisfit(*id) : QString();
    if (!misfit.isEmpty()) {
        table.complain(key, misfit);
    }
    return id.value_or(QString());
}

} // namespace

QString sparkplugIdMisfit(const QString &id)
{
    if (id.isEmpty()) {
        return QLatin1String("it is empty");
    }
    for (const QChar character : id) {
        if (QLatin1String("+/#").contains(character) || character.unicode() < 0x20) {
            return QLatin1String("it has a '+', '/' or '#', or a control character; a topic gives "
                                 "them a meaning");
        }
    }
    return QString();
}

SparkplugSettings readSparkplug(ConfigTable &table, const ConfigFolders &folders)
{
    SparkplugSettings settings;
    settings.connection = readMqttConnection(table, folders.config);
    settings.group = checkedId(table, "group", table.neededText("group", "group = \"plant\""));
    settings.node = checkedId(table, "node", table.neededText("node", "node = \"hall-2\""));
    settings.primaryHost = checkedId(table, "primary_host", table.text("primary_host"));
    settings.takesCommands = table.truth("commands", false);
    settings.spreadMs =
        static_cast<int>(table.duration("spread", 0, kLongestSpreadMs, kUsualSpreadMs));
    settings.numberFile = QDir(folders.state).filePath(table.name() + QLatin1String(".sparkplug"));
    return settings;
}

} // namespace cnet::gateway
