#pragma once

#include "gateway/toml/config_node.h"

#include <QStringList>

#include <optional>

namespace cnet::gateway {

/**
 * A table of the configuration while it is read: what is wrong with a value goes to the findings,
 * and what was given for want of it is returned. finish() complains of the keys that nobody asked
 * for.
 */
class ConfigTable
{
public:
    /**
     * @param title what findings call it: "line.press"; empty for the file itself
     * @param node of kind Table; with `findings` it must outlive this object
     */
    ConfigTable(QString title, const ConfigNode &node, Findings &findings);

    bool has(const char *key) const;
    /** Of the key's value; of the table itself where it has no such key. */
    ConfigPlace placeOf(const char *key) const;

    /** A text that is not empty. */
    std::optional<QString> text(const char *key);
    /** The same; without it the table is wrong. @param example "link = \"tcp:...\"" */
    std::optional<QString> neededText(const char *key, const char *example);
    /** A whole number within bounds. */
    int number(const char *key, int low, int high, int usual);
    /** true or false. */
    bool truth(const char *key, bool usual);
    /** A number, whole or with a fraction. */
    std::optional<double> fraction(const char *key);
    /** What stands in square brackets; each is to be looked at. @param expected "a list of..." */
    std::vector<ConfigEntry> list(const char *key, const char *expected);
    /** "250ms", "10s", "5m", "2h" or "30d", in milliseconds, within bounds. */
    qint64 duration(const char *key, qint64 lowMs, qint64 highMs, qint64 usualMs);
    /** "512kB", "100MB" or "4GB", in bytes: 100 kB or more. */
    qint64 size(const char *key, qint64 usual);
    /** One of some words. @return its index, or `usual` */
    int choice(const char *key, const QStringList &words, int usual);
    /** A table within it. */
    std::optional<ConfigTable> table(const char *key);
    /** The tables within a table that has nothing else: "line.press" and "line.oven" of "line". */
    std::vector<ConfigTable> tables(const char *key);

    /** "line.press" */
    const QString &title() const { return m_title; }
    /** A table within a list. @param entry of kind Table; must outlive what is returned */
    ConfigTable within(const char *key, const ConfigEntry &entry) const;

    QString name() const;

    /**
     * All that it says, in one text whatever its order and layout: what has the same is the same.
     * @param without keys that make no difference
     */
    QString digest(const QStringList &without = {}) const;

    /** Says what is wrong with a key's value. */
    void complain(const char *key, const QString &text);
    /** The same of one in a key's list. */
    void complain(const char *key, const ConfigEntry &entry, const QString &text);
    /** Says what is wrong with the table. */
    void complain(const QString &text);

    void finish();

private:
    const ConfigNode *find(const char *key);
    const ConfigNode *find(const char *key, ConfigNode::Kind kind, const char *expected);
    QString titleOf(const QString &key) const;
    void complain(const ConfigPlace &place, const QString &title, const QString &text);
    ConfigTable within(const ConfigEntry &entry) const;

    QString m_title;
    const ConfigNode &m_node;
    Findings &m_findings;
    QStringList m_known;
};

} // namespace cnet::gateway
