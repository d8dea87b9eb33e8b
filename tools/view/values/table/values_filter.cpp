#include "view/values/table/values_filter.h"

#include "view/look/quality_look.h"

#include <algorithm>

namespace cnet::view {

namespace {

int compareTimes(qint64 left, qint64 right)
{
    return left < right ? -1 : left > right ? 1 : 0;
}

int compareRaw(const QVector<quint16> &left, const QVector<quint16> &right)
{
    if (left == right) {
        return 0;
    }
    return std::lexicographical_compare(left.cbegin(), left.cend(), right.cbegin(), right.cend())
               ? -1
               : 1;
}

int compareWrites(const WriteNote &left, const WriteNote &right)
{
    return left.stage != right.stage ? (left.stage < right.stage ? -1 : 1)
                                     : QString::compare(left.text, right.text);
}

} // namespace

ValuesFilter::ValuesFilter(ValuesModel &model, QObject *parent)
    : QSortFilterProxyModel(parent)
    , m_model(model)
{
    for (int i = 0; i <= static_cast<int>(Quality::LineDown); ++i) {
        m_qualities.insert(i, qualityWords(static_cast<Quality>(i)).toLower());
    }
    setDynamicSortFilter(true);
    setSourceModel(&model);
}

void ValuesFilter::setWords(const QString &words)
{
    const QStringList wanted =
        words.toLower().simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (wanted != m_words) {
        m_words = wanted;
        invalidateFilter();
    }
}

void ValuesFilter::setGroup(const QString &group)
{
    if (group != m_group) {
        m_group = group;
        invalidateFilter();
    }
}

bool ValuesFilter::filterAcceptsRow(int sourceRow, const QModelIndex & /*sourceParent*/) const
{
    if (sourceRow < 0 || sourceRow >= m_model.rowCount()) {
        return false;
    }
    const ValueRow &row = m_model.row(sourceRow);
    if (!m_group.isEmpty()) {
        const QString &group = m_model.wholeTagOf(sourceRow).group;
        const bool isIn = group == m_group || (group.startsWith(m_group) &&
                                               group.at(m_group.size()) == QLatin1Char('/'));
        if (!isIn) {
            return false;
        }
    }
    const QString quality = m_qualities.value(static_cast<int>(row.now.quality));
    return std::all_of(m_words.cbegin(), m_words.cend(), [&](const QString &word) {
        return row.searched.contains(word) || quality.contains(word);
    });
}

int ValuesFilter::compareNames(const ValueRow &left, const ValueRow &right) const
{
    return left.tag == right.tag ? left.index - right.index
                                 : QString::compare(left.name, right.name, Qt::CaseInsensitive);
}

bool ValuesFilter::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const ValueRow &first = m_model.row(left.row());
    const ValueRow &second = m_model.row(right.row());
    switch (static_cast<ValueColumn>(left.column())) {
    case ValueColumn::Name:
        return compareNames(first, second) < 0;
    case ValueColumn::Value:
        return compareScalars(first.now.value.value, second.now.value.value) < 0;
    case ValueColumn::Quality:
        return first.now.quality < second.now.quality;
    case ValueColumn::Write:
        return compareWrites(first.write, second.write) < 0;
    case ValueColumn::Raw:
        return compareRaw(first.now.units, second.now.units) < 0;
    case ValueColumn::Changed:
        return compareTimes(first.changedAtMs, second.changedAtMs) < 0;
    case ValueColumn::Age:
        return compareTimes(m_model.readAtMs(right.row()), m_model.readAtMs(left.row())) < 0;
    case ValueColumn::Min:
        return compareScalars(first.least, second.least) < 0;
    case ValueColumn::Max:
        return compareScalars(first.greatest, second.greatest) < 0;
    case ValueColumn::Description:
        break;
    }
    return QString::compare(m_model.wholeTagOf(left.row()).description,
                            m_model.wholeTagOf(right.row()).description, Qt::CaseInsensitive) < 0;
}

} // namespace cnet::view
