#include "gateway/toml/config_table.h"

#include "gateway/toml/config_units.h"

#include "host/text/near_miss.h"

#include <QVariant>

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

namespace cnet::gateway {

namespace {

constexpr qint64 kLeastBytes = 100LL * 1000;

const ConfigEntry *entryOf(const ConfigNode &node, const QString &key)
{
    const auto found = std::find_if(node.entries.begin(), node.entries.end(),
                                    [&key](const ConfigEntry &entry) { return entry.key == key; });
    return found == node.entries.end() ? nullptr : &*found;
}

void addDigest(const ConfigNode &node, const QStringList &without, QStringList &parts)
{
    std::visit(
        [&parts](const auto &own) {
            if constexpr (!std::is_same_v<std::decay_t<decltype(own)>, std::monostate>) {
                parts.append(QVariant(own).toString());
            }
        },
        node.value);
    for (const ConfigEntry &entry : node.entries) {
        if (!without.contains(entry.key)) {
            parts.append(QLatin1Char('[') + entry.key);
            addDigest(entry.node, {}, parts);
            parts.append(QLatin1String("]"));
        }
    }
}

} // namespace

ConfigTable::ConfigTable(QString title, const ConfigNode &node, Findings &findings)
    : m_title(std::move(title))
    , m_node(node)
    , m_findings(findings)
{}

QString ConfigTable::name() const
{
    return m_title.mid(m_title.indexOf(QLatin1Char('.')) + 1);
}

QString ConfigTable::digest(const QStringList &without) const
{
    QStringList parts;
    addDigest(m_node, without, parts);
    return parts.join(QLatin1Char('\n'));
}

QString ConfigTable::titleOf(const QString &key) const
{
    return m_title.isEmpty() ? key : m_title + QLatin1Char('.') + key;
}

void ConfigTable::complain(const ConfigPlace &place, const QString &title, const QString &text)
{
    m_findings.add({place.line, place.column, title, text});
}

void ConfigTable::complain(const QString &text)
{
    complain(m_node.place, m_title, text);
}

void ConfigTable::complain(const char *key, const QString &text)
{
    complain(placeOf(key), titleOf(QLatin1String(key)), text);
}

void ConfigTable::complain(const char *key, const ConfigEntry &entry, const QString &text)
{
    complain(entry.place, titleOf(QLatin1String(key)), text);
}

bool ConfigTable::has(const char *key) const
{
    return entryOf(m_node, QLatin1String(key)) != nullptr;
}

ConfigPlace ConfigTable::placeOf(const char *key) const
{
    const ConfigEntry *entry = entryOf(m_node, QLatin1String(key));
    return entry == nullptr ? m_node.place : entry->node.place;
}

const ConfigNode *ConfigTable::find(const char *key)
{
    m_known.append(QLatin1String(key));
    const ConfigEntry *entry = entryOf(m_node, QLatin1String(key));
    return entry == nullptr ? nullptr : &entry->node;
}

const ConfigNode *ConfigTable::find(const char *key, ConfigNode::Kind kind, const char *expected)
{
    const ConfigNode *node = find(key);
    if (node != nullptr && node->kind != kind) {
        complain(key, QLatin1String("expected ") + QLatin1String(expected));
        return nullptr;
    }
    return node;
}

std::optional<QString> ConfigTable::text(const char *key)
{
    const char *const expected = "a text in quotation marks that is not empty";
    const ConfigNode *node = find(key, ConfigNode::Kind::Text, expected);
    if (node == nullptr) {
        return std::nullopt;
    }
    const QString text = std::get<QString>(node->value);
    if (text.isEmpty()) {
        complain(key, QLatin1String("expected ") + QLatin1String(expected));
        return std::nullopt;
    }
    return text;
}

std::optional<QString> ConfigTable::neededText(const char *key, const char *example)
{
    if (!has(key)) {
        m_known.append(QLatin1String(key));
        complain(QString::fromLatin1("there is no %1; for example %2")
                     .arg(QLatin1String(key), QLatin1String(example)));
        return std::nullopt;
    }
    return text(key);
}

int ConfigTable::number(const char *key, int low, int high, int usual)
{
    const ConfigNode *node = find(key);
    if (node == nullptr) {
        return usual;
    }
    const auto *number = std::get_if<qint64>(&node->value);
    if (number == nullptr || *number < low || *number > high) {
        complain(key,
                 QString::fromLatin1("expected a whole number from %1 to %2").arg(low).arg(high));
        return usual;
    }
    return static_cast<int>(*number);
}

bool ConfigTable::truth(const char *key, bool usual)
{
    const ConfigNode *node = find(key, ConfigNode::Kind::Truth, "true or false");
    return node == nullptr ? usual : std::get<bool>(node->value);
}

std::optional<double> ConfigTable::fraction(const char *key)
{
    const ConfigNode *node = find(key);
    if (node != nullptr && isNumber(node->value) && std::isfinite(approximately(node->value))) {
        return approximately(node->value);
    }
    if (node != nullptr) {
        complain(key, QLatin1String("expected a number, for example 12.5"));
    }
    return std::nullopt;
}

std::vector<ConfigEntry> ConfigTable::list(const char *key, const char *expected)
{
    const ConfigNode *node = find(key, ConfigNode::Kind::List, expected);
    return node == nullptr ? std::vector<ConfigEntry>() : node->entries;
}

qint64 ConfigTable::duration(const char *key, qint64 lowMs, qint64 highMs, qint64 usualMs)
{
    const ConfigNode *node = find(key);
    if (node == nullptr) {
        return usualMs;
    }
    const auto *text = std::get_if<QString>(&node->value);
    const auto ms = text == nullptr ? std::nullopt : parseDuration(*text);
    if (!ms || *ms < lowMs || *ms > highMs) {
        complain(key, QString::fromLatin1("expected a time from \"%1\" to \"%2\", as in \"250ms\", "
                                          "\"10s\", \"5m\", \"2h\" or \"30d\"")
                          .arg(durationText(lowMs), durationText(highMs)));
        return usualMs;
    }
    return *ms;
}

qint64 ConfigTable::size(const char *key, qint64 usual)
{
    const ConfigNode *node = find(key);
    if (node == nullptr) {
        return usual;
    }
    const auto *text = std::get_if<QString>(&node->value);
    const auto bytes = text == nullptr ? std::nullopt : parseSize(*text);
    if (!bytes || *bytes < kLeastBytes) {
        complain(key, QLatin1String("expected a size of 100kB or more, as in \"500kB\", "
                                    "\"100MB\" or \"4GB\""));
        return usual;
    }
    return *bytes;
}

int ConfigTable::choice(const char *key, const QStringList &words, int usual)
{
    const ConfigNode *node = find(key);
    if (node == nullptr) {
        return usual;
    }
    const auto *text = std::get_if<QString>(&node->value);
    const int index = text == nullptr ? -1 : static_cast<int>(words.indexOf(*text));
    if (index < 0) {
        complain(key, QString::fromLatin1("expected \"%1\"%2")
                          .arg(words.join(QLatin1String("\" or \"")),
                               text == nullptr ? QString() : nearMissHint(*text, words)));
        return usual;
    }
    return index;
}

ConfigTable ConfigTable::within(const ConfigEntry &entry) const
{
    return {titleOf(entry.key), entry.node, m_findings};
}

ConfigTable ConfigTable::within(const char *key, const ConfigEntry &entry) const
{
    return {titleOf(QLatin1String(key)), entry.node, m_findings};
}

std::optional<ConfigTable> ConfigTable::table(const char *key)
{
    if (find(key, ConfigNode::Kind::Table, "a table") == nullptr) {
        return std::nullopt;
    }
    return within(*entryOf(m_node, QLatin1String(key)));
}

std::vector<ConfigTable> ConfigTable::tables(const char *key)
{
    std::vector<ConfigTable> found;
    const ConfigNode *all = find(key, ConfigNode::Kind::Table, "tables with names, [line.press]");
    if (all == nullptr) {
        return found;
    }
    const ConfigTable outer = within(*entryOf(m_node, QLatin1String(key)));
    for (const ConfigEntry &entry : all->entries) {
        if (entry.node.kind == ConfigNode::Kind::Table && !entry.key.isEmpty()) {
            found.push_back(outer.within(entry));
        } else {
            complain(entry.place, outer.titleOf(entry.key),
                     QString::fromLatin1("expected a table with a name, [%1.press]")
                         .arg(QLatin1String(key)));
        }
    }
    return found;
}

void ConfigTable::finish()
{
    for (const ConfigEntry &entry : m_node.entries) {
        if (!m_known.contains(entry.key)) {
            complain(entry.place, titleOf(entry.key),
                     QLatin1String("there is no such key") + nearMissHint(entry.key, m_known));
        }
    }
}

} // namespace cnet::gateway
