#include "host/tagfile/tag_warnings.h"

#include <QHash>
#include <QMap>

#include <algorithm>
#include <tuple>

namespace cnet {

namespace {

const int kNoBit = -1;
const int kLeastForStations = 4; ///< of fewer tags each may well be on a station of its own

void warn(Finding place, const QString &text, Findings &warnings)
{
    place.text = text;
    warnings.add(place);
}

int bitOf(const Tag &tag)
{
    return tag.type.kind == ValueKind::Bit ? tag.type.bit : kNoBit;
}

bool shareMemory(const Tag &left, const Tag &right)
{
    return left.item.station == right.item.station && left.item.reg.name == right.item.reg.name &&
           bitOf(left) == bitOf(right);
}

QString reachOf(const Tag &tag)
{
    const Item &item = tag.item;
    return item.count == 1
               ? item.reg.name + QLatin1Char(':') + item.addressText(0)
               : QString::fromLatin1("%1:%2 to %3")
                     .arg(item.reg.name, item.addressText(0), item.addressText(item.count - 1));
}

// One value that takes more words than there are up to the next tag has a wrong type, most likely.
void warnOfOverlap(int first, int second, const QVector<Tag> &tags, const TagFieldPlace &place,
                   Findings &warnings)
{
    const Tag &left = tags.at(first);
    const Tag &right = tags.at(second);
    const Finding there = place(first, TagColumn::Address);
    const Finding here = place(second, TagColumn::Address);
    if (left.count == 1 && left.item.count > 1 && right.item.start > left.item.start) {
        warn(
            place(first, TagColumn::Type),
            QString::fromLatin1("%1 takes %2, and '%3' of line %4 begins at %5 already; expected a "
                                "shorter type, or the next one further on, for example at %6")
                .arg(left.type.text(), reachOf(left), right.name)
                .arg(here.line)
                .arg(right.item.addressText(0), left.item.addressText(left.item.count)),
            warnings);
        return;
    }
    const bool later = here.line > there.line;
    const Tag &other = later ? left : right;
    warn(
        later ? here : there,
        QString::fromLatin1("overlaps '%1' of line %2, which takes %3; a change of one is a change "
                            "of the other")
            .arg(other.name)
            .arg(later ? there.line : here.line)
            .arg(reachOf(other)),
        warnings);
}

void warnOfOverlaps(const QVector<Tag> &tags, const TagFieldPlace &place, Findings &warnings)
{
    QVector<int> sorted(tags.size());
    for (int i = 0; i < sorted.size(); ++i) {
        sorted[i] = i;
    }
    const auto key = [&](int index) {
        const Tag &tag = tags.at(index);
        return std::make_tuple(tag.item.station, std::cref(tag.item.reg.name), bitOf(tag),
                               tag.item.start, index);
    };
    std::sort(sorted.begin(), sorted.end(),
              [&](int left, int right) { return key(left) < key(right); });
    int reaching = -1; // of those before, the one that reaches farthest
    for (const int index : std::as_const(sorted)) {
        const Tag &tag = tags.at(index);
        const bool related = reaching >= 0 && shareMemory(tags.at(reaching), tag);
        const int reach = related ? tags.at(reaching).item.start + tags.at(reaching).item.count : 0;
        if (related && tag.item.start < reach) {
            warnOfOverlap(reaching, index, tags, place, warnings);
        }
        if (!related || tag.item.start + tag.item.count > reach) {
            reaching = index;
        }
    }
}

void warnOfNames(const QVector<Tag> &tags, const TagFieldPlace &place, Findings &warnings)
{
    QHash<QString, int> known;
    for (int i = 0; i < tags.size(); ++i) {
        const QString name = tags.at(i).name.toLower();
        const auto before = known.constFind(name);
        if (before != known.cend()) {
            warn(place(i, TagColumn::Name),
                 QString::fromLatin1("'%1' differs from '%2' of line %3 only by case, and people "
                                     "will mix them up; expected another name")
                     .arg(tags.at(i).name, tags.at(*before).name)
                     .arg(place(*before, TagColumn::Name).line),
                 warnings);
        } else {
            known.insert(name, i);
        }
    }
}

void warnOfStations(const QVector<Tag> &tags, const TagFieldPlace &place, Findings &warnings)
{
    QMap<int, QVector<int>> byStation;
    for (int i = 0; i < tags.size(); ++i) {
        byStation[tags.at(i).item.station].append(i);
    }
    QStringList usual;
    for (auto it = byStation.cbegin(); it != byStation.cend(); ++it) {
        if (it->size() > 1) {
            usual.append(QString::number(it.key()));
        }
    }
    if (tags.size() < kLeastForStations || usual.isEmpty()) {
        return;
    }
    for (auto it = byStation.cbegin(); it != byStation.cend(); ++it) {
        if (it->size() == 1) {
            warn(place(it->first(), TagColumn::Station),
                 QString::fromLatin1("station %1 has no other tag; is it not one of those that the "
                                     "others are on, for example %2?")
                     .arg(it.key())
                     .arg(usual.first()),
                 warnings);
        }
    }
}

} // namespace

void warnOfTags(const QVector<Tag> &tags, const TagFieldPlace &place, Findings &warnings)
{
    warnOfOverlaps(tags, place, warnings);
    warnOfNames(tags, place, warnings);
    warnOfStations(tags, place, warnings);
}

} // namespace cnet
