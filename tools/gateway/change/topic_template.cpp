#include "gateway/change/topic_template.h"

#include "host/text/near_miss.h"

#include <QUrl>

#include <algorithm>

namespace cnet::gateway {

namespace {

// With names of 120 characters in each place it stays far below what a topic may have, 65 535
// bytes.
constexpr int kMostCharacters = 200;
const QLatin1String kSite("{site}");

const QStringList &placeNames()
{
    static const QStringList names{QLatin1String("{line}"), QLatin1String("{station}"),
                                   QLatin1String("{tag}")};
    return names;
}

bool isForbidden(QChar character)
{
    return character == QLatin1Char('+') || character == QLatin1Char('#') ||
           character.unicode() < 0x20 || character.unicode() == 0x7f;
}

QString nameOfLevel(const QString &level)
{
    return QUrl::fromPercentEncoding(level.toUtf8());
}

QString &nameAt(TopicNames &names, TopicTemplate::Place place)
{
    switch (place) {
    case TopicTemplate::Place::Line:
        return names.line;
    case TopicTemplate::Place::Station:
        return names.station;
    case TopicTemplate::Place::Tag:
        break;
    }
    return names.tag;
}

} // namespace

std::optional<TopicTemplate::Level> TopicTemplate::levelOf(const QString &text, QString &error)
{
    Level level;
    level.word = text;
    const auto place = placeNames().indexOf(text);
    if (place >= 0) {
        level.place = static_cast<Place>(place);
    } else if (text.contains(QLatin1Char('{')) || text.contains(QLatin1Char('}'))) {
        QStringList known = placeNames();
        known.append(kSite);
        error = QString::fromLatin1("'%1' is no level of a topic; expected a word, or one of %2%3")
                    .arg(text, known.join(QLatin1Char(' ')), nearMissHint(text, known));
        return std::nullopt;
    } else if (text.isEmpty()) {
        error = QLatin1String("a level of a topic is empty");
        return std::nullopt;
    } else if (std::any_of(text.begin(), text.end(), isForbidden)) {
        error = QLatin1String("a topic has no +, # and control characters");
        return std::nullopt;
    }
    return level;
}

std::optional<TopicTemplate> TopicTemplate::parse(const QString &text, const QString &site,
                                                  QString &error, const QString &escaped)
{
    if (text.contains(kSite) && site.isEmpty()) {
        error = QLatin1String("there is no site; for example site = \"plant\"");
        return std::nullopt;
    }
    QString filled = text;
    filled.replace(kSite, site);
    if (filled.size() > kMostCharacters || filled.startsWith(QLatin1Char('$'))) {
        error = QString::fromLatin1("a topic has at most %1 characters, and no $ at its beginning")
                    .arg(kMostCharacters);
        return std::nullopt;
    }
    TopicTemplate result;
    result.m_escaped = escaped;
    for (const QString &part : filled.split(QLatin1Char('/'))) {
        const auto level = levelOf(part, error);
        if (!level) {
            return std::nullopt;
        }
        if (level->place && result.has(*level->place)) {
            error = level->word + QLatin1String(" stands there twice");
            return std::nullopt;
        }
        const auto isEscaped = [&](QChar own) { return escaped.contains(own); };
        if (!level->place && std::any_of(part.begin(), part.end(), isEscaped)) {
            error = QString::fromLatin1("'%1' has a character that is to be escaped").arg(part);
            return std::nullopt;
        }
        result.m_levels.append(*level);
    }
    return result;
}

// A name that no UTF-8 stands for would end the connection.
QString TopicTemplate::levelOfName(const QString &name) const
{
    QString level;
    for (const QChar character : QString::fromUtf8(name.toUtf8())) {
        if (isForbidden(character) || character == QLatin1Char('/') ||
            character == QLatin1Char('%') || m_escaped.contains(character)) {
            level += QString::fromLatin1("%%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        } else {
            level += character;
        }
    }
    return level;
}

bool TopicTemplate::has(Place place) const
{
    return std::any_of(m_levels.begin(), m_levels.end(),
                       [place](const Level &level) { return level.place == place; });
}

QString TopicTemplate::topic(const TopicNames &names) const
{
    TopicNames all = names;
    QStringList levels;
    for (const Level &level : m_levels) {
        levels.append(level.place ? levelOfName(nameAt(all, *level.place)) : level.word);
    }
    return levels.join(QLatin1Char('/'));
}

QString TopicTemplate::filter() const
{
    QStringList levels;
    for (const Level &level : m_levels) {
        levels.append(level.place ? QString(QLatin1Char('+')) : level.word);
    }
    return levels.join(QLatin1Char('/'));
}

std::optional<TopicNames> TopicTemplate::read(const QString &topic) const
{
    const QStringList levels = topic.split(QLatin1Char('/'));
    if (levels.size() != m_levels.size()) {
        return std::nullopt;
    }
    TopicNames names;
    for (int i = 0; i < m_levels.size(); ++i) {
        const Level &level = m_levels.at(i);
        if (level.place) {
            nameAt(names, *level.place) = nameOfLevel(levels.at(i));
        } else if (level.word != levels.at(i)) {
            return std::nullopt;
        }
    }
    return names;
}

bool TopicTemplate::overlaps(const TopicTemplate &other) const
{
    return std::equal(m_levels.begin(), m_levels.end(), other.m_levels.begin(),
                      other.m_levels.end(), [](const Level &left, const Level &right) {
                          return left.place || right.place || left.word == right.word;
                      });
}

TopicTemplate TopicTemplate::with(const QStringList &levels) const
{
    TopicTemplate result = *this;
    QString error;
    for (const QString &text : levels) {
        if (const auto level = levelOf(text, error)) {
            result.m_levels.append(*level);
        }
    }
    return result;
}

} // namespace cnet::gateway
