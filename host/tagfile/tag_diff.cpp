#include "host/tagfile/tag_diff.h"

#include "host/tag/typed_item.h"

namespace cnet {

namespace {

const int kShown = 3; ///< changes that are told one by one

QString changesText(const QVector<TagChange> &changes)
{
    QStringList texts;
    for (const TagChange &change : changes.mid(0, kShown)) {
        QStringList columns;
        for (const TagColumn column : change.columns) {
            columns.append(tagColumnName(column));
        }
        texts.append(change.name + QLatin1String(": ") + columns.join(QLatin1String(", ")));
    }
    if (changes.size() > kShown) {
        texts.append(QLatin1String("..."));
    }
    return texts.join(QLatin1String("; "));
}

} // namespace

QString TagDiff::text() const
{
    QStringList parts;
    const auto count = [&parts](qsizetype number, const char *what) {
        if (number > 0) {
            parts.append(QString::fromLatin1("%1 %2").arg(number).arg(QLatin1String(what)));
        }
    };
    count(added.size(), "added");
    count(removed.size(), "removed");
    count(changed.size(), "changed");
    if (!changed.isEmpty()) {
        parts.last() += QString::fromLatin1(" (%1)").arg(changesText(changed));
    }
    count(unchanged.size(), "unchanged");
    return parts.isEmpty() ? QString::fromLatin1("no tags")
                           : QLatin1String("tags: ") + parts.join(QLatin1String(", "));
}

TagDiff tagDiff(const TagSet &before, const TagSet &after)
{
    TagDiff diff;
    for (const Tag &tag : after.all()) {
        const QString name = tagText(tag);
        const Tag *const old = before.find(name);
        if (old == nullptr) {
            diff.added.append(name);
            continue;
        }
        const QVector<TagColumn> columns = tagDifferences(*old, tag);
        if (columns.isEmpty()) {
            diff.unchanged.append(name);
        } else {
            diff.changed.append({name, columns});
        }
    }
    for (const Tag &tag : before.all()) {
        if (after.indexOf(tagText(tag)) < 0) {
            diff.removed.append(tagText(tag));
        }
    }
    return diff;
}

} // namespace cnet
