#pragma once

#include <QStringList>
#include <QVector>

#include <optional>

namespace cnet::gateway {

/** Names that stand in a topic. */
struct TopicNames
{
    QString line;
    QString station;
    QString tag;
};

/**
 * A topic with places for names, each of which is a level: "plant/{line}/{station}/{tag}". What a
 * name has and a level may not, "+", "#", "/" and control characters, stands there as "%2b" does
 * for "+"; and so do characters that a broker does not take.
 */
class TopicTemplate
{
public:
    enum class Place { Line, Station, Tag };

    TopicTemplate() = default;

    /**
     * @param site stands for {site}; empty: there is none
     * @param error receives what is wrong, when the result is empty
     * @param escaped further characters that a level may not have
     */
    static std::optional<TopicTemplate> parse(const QString &text, const QString &site,
                                              QString &error, const QString &escaped = QString());

    bool has(Place place) const;

    QString topic(const TopicNames &names) const;

    /** What a subscriber asks for: a "+" for each place. */
    QString filter() const;

    /** @return the names in a topic; nothing: it is none of these */
    std::optional<TopicNames> read(const QString &topic) const;

    /** True where a topic may be one of both. */
    bool overlaps(const TopicTemplate &other) const;

    /** The same with further levels behind, each a word or a place. */
    TopicTemplate with(const QStringList &levels) const;

private:
    struct Level
    {
        std::optional<Place> place; ///< nothing: a word
        QString word;
    };

    static std::optional<Level> levelOf(const QString &text, QString &error);

    QString levelOfName(const QString &name) const;

    QVector<Level> m_levels;
    QString m_escaped;
};

} // namespace cnet::gateway
