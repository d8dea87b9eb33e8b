// What the cells of the table say and look like.
#include "view/values/table/values_model.h"

#include "view/look/quality_look.h"
#include "view/tags/tag_drag.h"

#include "host/tag/typed_item.h"
#include "host/tag/value_format.h"

#include <QLocale>
#include <QMimeData>
#include <QSet>

namespace cnet::view {

namespace {

/// A quality that has the tone's sign.
Quality signOf(Tone tone)
{
    switch (tone) {
    case Tone::Good:
        return Quality::Good;
    case Tone::Waiting:
        return Quality::Waiting;
    case Tone::Doubtful:
        return Quality::Stale;
    case Tone::Bad:
        return Quality::Refused;
    case Tone::Idle:
        break;
    }
    return Quality::NeverRead;
}

bool isRightAligned(const ValueRow &row, ValueColumn column)
{
    switch (column) {
    case ValueColumn::Value:
        return isNumber(row.now.value.value);
    case ValueColumn::Age:
    case ValueColumn::Min:
    case ValueColumn::Max:
        return true;
    default:
        return false;
    }
}

QString extremeText(const Tag &tag, const Scalar &value)
{
    return isNumber(value) ? typedText(tag, {value, ValueFault::None}) : QString();
}

} // namespace

QLatin1String valueColumnId(ValueColumn column)
{
    switch (column) {
    case ValueColumn::Name:
        return QLatin1String("name");
    case ValueColumn::Value:
        return QLatin1String("value");
    case ValueColumn::Quality:
        return QLatin1String("quality");
    case ValueColumn::Write:
        return QLatin1String("write");
    case ValueColumn::Raw:
        return QLatin1String("raw");
    case ValueColumn::Changed:
        return QLatin1String("changed");
    case ValueColumn::Age:
        return QLatin1String("age");
    case ValueColumn::Min:
        return QLatin1String("min");
    case ValueColumn::Max:
        return QLatin1String("max");
    case ValueColumn::Description:
        break;
    }
    return QLatin1String("description");
}

QVariant ValuesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    switch (static_cast<ValueColumn>(section)) {
    case ValueColumn::Name:
        return tr("Name");
    case ValueColumn::Value:
        return tr("Value");
    case ValueColumn::Quality:
        return tr("Quality");
    case ValueColumn::Write:
        return tr("Write");
    case ValueColumn::Raw:
        return tr("Raw words");
    case ValueColumn::Changed:
        return tr("Last change");
    case ValueColumn::Age:
        return tr("Age");
    case ValueColumn::Min:
        return tr("Min");
    case ValueColumn::Max:
        return tr("Max");
    case ValueColumn::Description:
        return tr("Description");
    }
    return {};
}

QVariant ValuesModel::data(const QModelIndex &index, int role) const
{
    if (!isRow(index)) {
        return {};
    }
    const ValueRow &row = m_rows.at(index.row());
    const auto column = static_cast<ValueColumn>(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return text(row, column);
    case Qt::EditRole:
        return column == ValueColumn::Value && row.now.value.isKnown()
                   ? typedText(wholeTagOf(index.row()), row.now.value)
                   : text(row, column);
    case Qt::ToolTipRole:
        return toolTip(row, column);
    case Qt::DecorationRole:
        return decoration(row, column);
    case Qt::ForegroundRole:
        return foreground(row, column);
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignVCenter |
                                (isRightAligned(row, column) ? Qt::AlignRight : Qt::AlignLeft));
    case Qt::FontRole:
        return column == ValueColumn::Raw ? QVariant(m_fixed) : QVariant();
    case RowRole:
        return index.row();
    case FreshRole:
        return freshness(row);
    default:
        return {};
    }
}

QString ValuesModel::text(const ValueRow &row, ValueColumn column) const
{
    const Tag &tag = m_tags.tags().all().at(row.tag);
    switch (column) {
    case ValueColumn::Name:
        return row.name;
    case ValueColumn::Value:
        return shownText(tag, row.now.value);
    case ValueColumn::Quality:
        return qualityWords(row.now.quality);
    case ValueColumn::Write:
        return row.write.text;
    case ValueColumn::Raw:
        return rawText(row.now.units, tag.item.reg.isBit());
    case ValueColumn::Changed:
        return row.changedAtMs == 0
                   ? QString()
                   : wallTime(row.changedAtMs).toString(QLatin1String("HH:mm:ss.zzz"));
    case ValueColumn::Age:
        return ageText(ageMs(row));
    case ValueColumn::Min:
        return extremeText(tag, row.least);
    case ValueColumn::Max:
        return extremeText(tag, row.greatest);
    case ValueColumn::Description:
        break;
    }
    return tag.description;
}

QString ValuesModel::toolTip(const ValueRow &row, ValueColumn column) const
{
    const Tag &tag = m_tags.tags().all().at(row.tag);
    switch (column) {
    case ValueColumn::Name:
        return tag.group.isEmpty()
                   ? typedItemText(tag, row.index)
                   : tr("%1, group %2").arg(typedItemText(tag, row.index), tag.group);
    case ValueColumn::Value:
        return row.isWritable ? tr("F2 or a double click changes it, Enter writes")
                              : tr("can only be read");
    case ValueColumn::Quality:
        return m_tags.state(row.tag).reason();
    case ValueColumn::Changed:
        return row.changedAtMs == 0
                   ? QString()
                   : QLocale().toString(wallTime(row.changedAtMs), QLocale::LongFormat);
    default:
        return text(row, column); // it may be cut
    }
}

QVariant ValuesModel::decoration(const ValueRow &row, ValueColumn column) const
{
    const bool isWrite = column == ValueColumn::Write && row.write.stage != WriteStage::None;
    if (!isWrite && column != ValueColumn::Quality) {
        return {};
    }
    const Tone tone = isWrite ? toneOf(row.write.stage) : toneOf(row.now.quality);
    QIcon &icon = m_icons[static_cast<int>(tone)];
    if (icon.isNull()) {
        icon = qualityIcon(signOf(tone), m_palette);
    }
    return icon;
}

QVariant ValuesModel::foreground(const ValueRow &row, ValueColumn column) const
{
    const bool isOfQuality = column == ValueColumn::Value || column == ValueColumn::Quality;
    if (isOfQuality && row.now.quality != Quality::Good) {
        return toneColour(toneOf(row.now.quality), m_palette);
    }
    return column == ValueColumn::Write ? QVariant(toneColour(toneOf(row.write.stage), m_palette))
                                        : QVariant();
}

void ValuesModel::setPalette(const QPalette &palette)
{
    m_palette = palette;
    m_icons.clear();
    if (!m_rows.isEmpty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, kValueColumns - 1),
                           {Qt::DecorationRole, Qt::ForegroundRole});
    }
}

QStringList ValuesModel::mimeTypes() const
{
    return mimeOfTags({})->formats();
}

QMimeData *ValuesModel::mimeData(const QModelIndexList &indexes) const
{
    QStringList names;
    QSet<int> seen;
    for (const QModelIndex &index : indexes) {
        if (isRow(index) && !seen.contains(index.row())) {
            seen.insert(index.row());
            names.append(m_rows.at(index.row()).name);
        }
    }
    return mimeOfTags(names).release();
}

} // namespace cnet::view
