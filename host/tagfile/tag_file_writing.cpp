// Tags written into the file that they came from, or into a new one.
#include "host/tagfile/tag_file.h"

#include <QHash>

#include <algorithm>

namespace cnet {

namespace {

// Tags that a file does not have yet, as its rows would be.
QStringList rowOf(const Tag &tag, const QVector<int> &places)
{
    QStringList texts;
    for (int i = 0; i < kTagColumns; ++i) {
        const auto column = static_cast<TagColumn>(i);
        const QString text = tagFieldText(tag, column);
        if (places.at(i) < 0) {
            continue;
        }
        while (texts.size() <= places.at(i)) {
            texts.append(QString());
        }
        texts[places.at(i)] = text == tagFieldDefault(column) ? QString() : text;
    }
    return texts;
}

} // namespace

QByteArray TagFile::updated(const QVector<Tag> &tags) const
{
    if (m_header < 0) {
        return written(tags, divider());
    }
    CsvFile csv = m_csv;
    QVector<int> places = m_places;
    int columns = m_columns;
    const auto placeFor = [&](TagColumn column) {
        int &place = places[static_cast<int>(column)];
        if (place < 0) {
            place = columns++;
            csv.setFields(m_header, place, {tagColumnName(column)});
        }
        return place;
    };
    QHash<QString, int> wanted;
    for (int i = 0; i < tags.size(); ++i) {
        wanted.insert(tags.at(i).name, i);
    }
    for (int i = 0; i < m_tags.size(); ++i) {
        const int index = wanted.take(m_tags.at(i).name);
        const bool stays = index < tags.size() && tags.at(index).name == m_tags.at(i).name;
        if (!stays) {
            csv.remove(m_records.at(i));
            continue;
        }
        for (const TagColumn column : tagDifferences(m_tags.at(i), tags.at(index))) {
            const QString text = tagFieldText(tags.at(index), column);
            csv.setFields(m_records.at(i), placeFor(column),
                          {text.isNull() ? QString::fromLatin1("") : text});
        }
    }
    for (const Tag &tag : tags) {
        if (!wanted.contains(tag.name)) {
            continue;
        }
        Tag usual;
        usual.item.station = m_station;
        for (const TagColumn column : tagDifferences(usual, tag)) {
            placeFor(column);
        }
        csv.append(rowOf(tag, places));
    }
    return csv.content();
}

QByteArray TagFile::written(const QVector<Tag> &tags, char divider)
{
    QVector<int> places(kTagColumns, -1);
    QStringList headings;
    for (int i = 0; i < kTagColumns; ++i) {
        const auto column = static_cast<TagColumn>(i);
        const bool used = std::any_of(tags.cbegin(), tags.cend(), [&](const Tag &tag) {
            return tagFieldText(tag, column) != tagFieldDefault(column);
        });
        if (used || isNeeded(column)) {
            places[i] = static_cast<int>(headings.size());
            headings.append(tagColumnName(column));
        }
    }
    CsvFile csv(CsvDialect{divider, CsvQuotes::Understood});
    csv.append(headings);
    for (const Tag &tag : tags) {
        csv.append(rowOf(tag, places));
    }
    return csv.content();
}

} // namespace cnet
