#include "gateway/config/write_rules.h"

#include "host/text/near_miss.h"

#include <QDir>

#include <algorithm>

namespace cnet::gateway {

namespace {

constexpr int kMostAMinute = 6000;
constexpr int kMostFiles = 1000;
constexpr qint64 kLeastWaitMs = 100;
constexpr qint64 kLongestWaitMs = 600000;
const char *const kAllow = "allow";
const char *const kExpected =
    "a list of tags, as in [\"press.speed\", {tag = \"mould.zones[*]\", max = 180}]";

std::optional<AllowRule> readRule(ConfigTable &table, const ConfigEntry &entry)
{
    AllowRule rule;
    rule.place = entry.node.place;
    if (entry.node.kind == ConfigNode::Kind::Table) {
        ConfigTable own = table.within(kAllow, entry);
        const auto pattern = own.neededText("tag", "tag = \"press.speed\"");
        rule.pattern = pattern.value_or(QString());
        rule.min = own.fraction("min");
        rule.max = own.fraction("max");
        rule.step = own.fraction("step");
        if (rule.min && rule.max && *rule.max < *rule.min) {
            own.complain("max", QLatin1String("it is less than min"));
        }
        if (rule.step && *rule.step <= 0) {
            own.complain("step", QLatin1String("expected a number above 0, for example 0.5"));
        }
        own.finish();
        return pattern ? std::optional<AllowRule>(rule) : std::nullopt;
    }
    const auto *text = std::get_if<QString>(&entry.node.value);
    if (text == nullptr || text->isEmpty()) {
        table.complain(kAllow, entry, QLatin1String("expected ") + QLatin1String(kExpected));
        return std::nullopt;
    }
    rule.pattern = *text;
    return rule;
}

WriteRules readRules(ConfigTable &table)
{
    WriteRules rules;
    for (const ConfigEntry &entry : table.list(kAllow, kExpected)) {
        if (const auto rule = readRule(table, entry)) {
            rules.allow.append(*rule);
        }
    }
    if (!table.has(kAllow)) {
        table.complain(
            QString::fromLatin1("there is no allow: expected %1").arg(QLatin1String(kExpected)));
    }
    const auto number = [&table](const char *key, int &value) {
        value = table.number(key, 1, kMostAMinute, value);
    };
    number("line_per_minute", rules.line.perMinute);
    number("line_burst", rules.line.burst);
    number("tag_per_minute", rules.value.perMinute);
    number("tag_burst", rules.value.burst);
    rules.waitMs = table.duration("wait", kLeastWaitMs, kLongestWaitMs, rules.waitMs);
    table.finish();
    return rules;
}

} // namespace

AuditConfig readAudit(ConfigTable &root, const QString &stateFolder)
{
    AuditConfig audit;
    QString name = QLatin1String("writes.jsonl");
    if (auto table = root.table("audit")) {
        name = table->text("path").value_or(name);
        audit.bytes = table->size("size", audit.bytes);
        audit.files = table->number("files", 2, kMostFiles, audit.files);
        table->finish();
    }
    audit.path = QDir(stateFolder).filePath(name);
    return audit;
}

void readWrites(ConfigTable &root, QVector<LineConfig> &lines)
{
    QStringList names;
    for (const LineConfig &line : qAsConst(lines)) {
        names.append(line.name);
    }
    std::vector<ConfigTable> tables = root.tables("writes");
    for (ConfigTable &table : tables) {
        const int index = static_cast<int>(names.indexOf(table.name()));
        if (index < 0) {
            table.complain(QLatin1String("there is no such line") +
                           nearMissHint(table.name(), names));
        }
        const WriteRules rules = readRules(table);
        if (index >= 0) {
            lines[index].writes = rules;
        }
    }
}

} // namespace cnet::gateway
