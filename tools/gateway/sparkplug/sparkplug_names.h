#pragma once

#include "gateway/config/sparkplug_kind.h"

#include <QSet>
#include <QString>

namespace cnet::gateway {

/** The topics of one edge node. */
class SparkplugTopics
{
public:
    SparkplugTopics(QString group, QString node)
        : m_group(std::move(group))
        , m_node(std::move(node))
    {}

    /** @param kind "NBIRTH", "NDATA"... */
    QString ofNode(const char *kind) const
    {
        return QLatin1String("spBv1.0/") + m_group + QLatin1Char('/') + QLatin1String(kind) +
               QLatin1Char('/') + m_node;
    }
    /** @param kind "DBIRTH", "DDATA"... */
    QString ofDevice(const char *kind, const QString &device) const
    {
        return ofNode(kind) + QLatin1Char('/') + device;
    }
    /** Where its commands come, for all of its devices. */
    QString deviceCommands() const { return ofDevice("DCMD", QLatin1String("+")); }
    /** The device of a command; empty where the topic is none of deviceCommands(). */
    QString commandedDevice(const QString &topic) const
    {
        const QString before = ofDevice("DCMD", QString());
        const QString device = topic.startsWith(before) ? topic.mid(before.size()) : QString();
        return sparkplugIdMisfit(device).isEmpty() ? device : QString();
    }
    /** Of this program's own: what tells that all before it is with the broker. */
    QString marker() const
    {
        return QLatin1String("cnet-gateway/") + m_group + QLatin1Char('/') + m_node +
               QLatin1String("/stored");
    }

    static QString ofHost(const QString &host) { return QLatin1String("spBv1.0/STATE/") + host; }

private:
    QString m_group;
    QString m_node;
};

/**
 * Names among which no two differ only by case, and that have nothing that a topic gives a meaning
 * to.
 */
class SparkplugNames
{
public:
    /** The name itself; where that may not be, one like it. */
    QString take(const QString &wanted, bool isId)
    {
        QString name = wanted;
        for (QChar &character : name) {
            if (character.unicode() < 0x20 || (isId && QLatin1String("+/#").contains(character))) {
                character = QLatin1Char('_');
            }
        }
        const QString alike = name;
        for (int number = 2; m_taken.contains(name.toLower()); ++number) {
            name = alike + QLatin1Char('~') + QString::number(number);
        }
        m_taken.insert(name.toLower());
        return name;
    }

private:
    QSet<QString> m_taken; ///< in lower case
};

} // namespace cnet::gateway
