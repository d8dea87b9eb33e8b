#include "view/recipes/sheet/recipe_model.h"

#include "view/look/quality_look.h"

#include "host/address/value_text.h"

#include <QApplication>
#include <QFont>

namespace cnet::view {

RecipeModel::RecipeModel(QObject *parent)
    : QAbstractTableModel(parent)
{}

void RecipeModel::setSheet(const RecipeSheet &sheet)
{
    beginResetModel();
    m_sheet = sheet;
    m_values.clear();
    for (const SheetRow &row : sheet.rows()) {
        m_values.append(row.value);
    }
    m_saved = m_values;
    m_words.clear();
    endResetModel();
    m_undo.clear();
}

void RecipeModel::clear()
{
    beginResetModel();
    m_sheet.reset();
    m_values.clear();
    m_saved.clear();
    m_words.clear();
    endResetModel();
    m_undo.clear();
}

bool RecipeModel::readdress(const RecipeSheet &sheet)
{
    if (sheet.rows().size() != m_values.size()) {
        return false;
    }
    m_sheet = sheet;
    if (!m_values.isEmpty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1));
    }
    return true;
}

void RecipeModel::setTagNames(const QHash<QString, QString> &names)
{
    m_tagNames = names;
    if (!m_values.isEmpty()) {
        Q_EMIT dataChanged(index(0, kNote), index(rowCount() - 1, kNote));
    }
}

void RecipeModel::setWords(const QVector<WordOutcome> &words)
{
    if (words.size() != m_values.size() || words.isEmpty()) {
        return;
    }
    m_words = words;
    Q_EMIT dataChanged(index(0, kValue), index(rowCount() - 1, kState));
}

void RecipeModel::forgetPlc()
{
    if (!m_words.isEmpty()) {
        m_words.clear();
        Q_EMIT dataChanged(index(0, kValue), index(rowCount() - 1, kState));
    }
}

RowCounts RecipeModel::counts() const
{
    RowCounts counts;
    counts.rows = rowCount();
    for (int row = 0; row < counts.rows; ++row) {
        const RowState::Kind kind = stateOf(row).kind;
        counts.same += kind == RowState::Same ? 1 : 0;
        const bool isKnown = m_words.value(row).plc.has_value();
        counts.different += kind == RowState::Different && isKnown ? 1 : 0;
        counts.unknown += kind == RowState::Different && !isKnown ? 1 : 0;
        counts.missing += m_values.at(row) ? 0 : 1;
    }
    return counts;
}

RowState RecipeModel::stateOf(int row) const
{
    return rowState(m_words.value(row), m_values.at(row));
}

int RecipeModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_values.size());
}

int RecipeModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : kColumns;
}

QVariant RecipeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    switch (section) {
    case kAddress:
        return tr("Address");
    case kNote:
        return tr("Meaning");
    case kValue:
        return tr("Recipe");
    case kPlc:
        return tr("PLC");
    case kState:
        return tr("State");
    default:
        break;
    }
    return {};
}

QString RecipeModel::text(int row, int column) const
{
    const SheetRow &line = m_sheet->rows().at(row);
    const auto like = [&](std::optional<quint16> value) {
        return value ? valueTextLike(*value, line.written) : QString();
    };
    switch (column) {
    case kAddress:
        return line.address;
    case kNote:
        return line.note.isEmpty() ? m_tagNames.value(line.address) : line.note;
    case kValue:
        return like(m_values.at(row));
    case kPlc:
        return like(m_words.value(row).plc);
    default:
        break;
    }
    return stateOf(row).text;
}

QString RecipeModel::toolTip(int row, int column) const
{
    if (column != kValue && column != kPlc) {
        return text(row, column);
    }
    const auto value = column == kValue ? m_values.at(row) : m_words.value(row).plc;
    if (!value) {
        return column == kValue ? tr("No value. Expected %1.").arg(valueHint(false))
                                : tr("Not known. Compare to read it.");
    }
    QString tip = valueText(*value, false);
    const auto number = static_cast<qint16>(*value);
    if (number < 0) {
        tip += QString::fromLatin1(" (%1)").arg(number);
    }
    if (column == kValue && m_saved.at(row) != value) {
        const auto before = m_saved.at(row);
        tip += QLatin1Char('\n') +
               (before ? tr("Not saved; the file has %1.").arg(valueText(*before, false))
                       : tr("Not saved; the file has no value."));
    }
    return tip;
}

QIcon RecipeModel::icon(Quality like) const
{
    const QPalette palette = QApplication::palette();
    if (m_iconsOf != palette.cacheKey()) {
        m_icons.clear();
        m_iconsOf = palette.cacheKey();
    }
    const int key = static_cast<int>(like);
    if (!m_icons.contains(key)) {
        m_icons.insert(key, qualityIcon(like, palette));
    }
    return m_icons.value(key);
}

QVariant RecipeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= kColumns || !m_sheet) {
        return {};
    }
    const int row = index.row();
    const int column = index.column();
    const bool isChanged = column == kValue && m_values.at(row) != m_saved.at(row);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return text(row, column);
    case Qt::ToolTipRole:
        return toolTip(row, column);
    case Qt::TextAlignmentRole:
        return QVariant(
            static_cast<int>((column == kValue || column == kPlc ? Qt::AlignRight : Qt::AlignLeft) |
                             Qt::AlignVCenter));
    case Qt::AccessibleTextRole:
        return isChanged ? tr("%1, not saved").arg(text(row, column)) : text(row, column);
    case Qt::FontRole:
        if (isChanged) {
            QFont font;
            font.setBold(true);
            return font;
        }
        return {};
    default:
        break;
    }
    const RowState state = stateOf(row);
    if (role == kDifferentRole) {
        return state.kind == RowState::Different;
    }
    if (role == Qt::DecorationRole && column == kState && state.kind != RowState::Unknown) {
        return icon(state.like);
    }
    if (role == Qt::BackgroundRole && state.kind == RowState::Different && column >= kPlc) {
        return washColour(toneOf(state.like), QApplication::palette());
    }
    return {};
}

bool RecipeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || (flags(index) & Qt::ItemIsEditable) == 0) {
        return false;
    }
    const auto word = parseValue(value.toString(), false);
    if (!word) {
        return false;
    }
    edit({{index.row(), std::nullopt, word}},
         tr("set %1").arg(m_sheet->rows().at(index.row()).address));
    return true;
}

Qt::ItemFlags RecipeModel::flags(const QModelIndex &index) const
{
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= kColumns) {
        return Qt::NoItemFlags;
    }
    const bool isEditable = index.column() == kValue && m_editing == Editing::Allowed;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren |
           (isEditable ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

} // namespace cnet::view
