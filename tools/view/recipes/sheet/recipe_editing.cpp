#include "view/recipes/sheet/recipe_model.h"

#include "host/address/value_text.h"

#include <QUndoCommand>

#include <algorithm>

namespace cnet::view {

class RecipeModel::EditCommand : public QUndoCommand
{
public:
    EditCommand(RecipeModel &model, const QVector<RowEdit> &edits, const QString &name)
        : QUndoCommand(name)
        , m_model(model)
        , m_edits(edits)
    {}

    void undo() override { m_model.put(m_edits, &RowEdit::before); }
    void redo() override { m_model.put(m_edits, &RowEdit::after); }

private:
    RecipeModel &m_model;
    QVector<RowEdit> m_edits;
};

void RecipeModel::edit(const QVector<RowEdit> &edits, const QString &name)
{
    QVector<RowEdit> real;
    for (RowEdit one : edits) {
        if (one.row >= 0 && one.row < m_values.size() && one.after != m_values.at(one.row)) {
            one.before = m_values.at(one.row);
            real.append(one);
        }
    }
    if (!real.isEmpty() && m_editing == Editing::Allowed) {
        m_undo.push(new EditCommand(*this, real, name));
    }
}

bool RecipeModel::paste(const QVector<int> &rows, const QStringList &texts, QString &error)
{
    if (texts.size() > rows.size()) {
        error = tr("There are %n values to paste", "", static_cast<int>(texts.size())) +
                tr(", and only %n rows from here on.", "", static_cast<int>(rows.size()));
        return false;
    }
    QVector<RowEdit> all;
    for (int i = 0; i < texts.size(); ++i) {
        const auto value = parseValue(texts.at(i), false);
        if (!value) {
            error =
                tr("'%1' is no value; expected %2.").arg(quotable(texts.at(i)), valueHint(false));
            return false;
        }
        all.append({rows.at(i), std::nullopt, value});
    }
    edit(all, tr("paste"));
    return true;
}

QVector<RowEdit> RecipeModel::edits() const
{
    QVector<RowEdit> all;
    for (int row = 0; row < m_values.size(); ++row) {
        if (m_values.at(row) != m_saved.at(row)) {
            all.append({row, m_saved.at(row), m_values.at(row)});
        }
    }
    return all;
}

void RecipeModel::markSaved()
{
    m_saved = m_values;
    m_undo.setClean();
    if (!m_values.isEmpty()) {
        Q_EMIT dataChanged(index(0, kValue), index(rowCount() - 1, kValue));
    }
}

int RecipeModel::takeFromPlc()
{
    QVector<RowEdit> all;
    for (int row = 0; row < m_words.size(); ++row) {
        const auto plc = m_words.at(row).plc;
        if (plc && plc != m_values.at(row)) {
            all.append({row, std::nullopt, plc});
        }
    }
    edit(all, tr("take the values of the PLC"));
    return static_cast<int>(all.size());
}

// A transfer tells of the values that it had: of one that was edited since only what the PLC holds
// counts.
void RecipeModel::put(const QVector<RowEdit> &edits, std::optional<quint16> RowEdit::*value)
{
    for (const RowEdit &one : edits) {
        m_values[one.row] = one.*value;
        if (one.row < m_words.size()) {
            WordOutcome &word = m_words[one.row];
            word.fate = word.plc ? WordFate::Read : WordFate::Untouched;
            word.reason.clear();
        }
    }
    const auto bounds = std::minmax_element(
        edits.cbegin(), edits.cend(),
        [](const RowEdit &left, const RowEdit &right) { return left.row < right.row; });
    Q_EMIT dataChanged(index(bounds.first->row, 0), index(bounds.second->row, kColumns - 1));
    Q_EMIT edited();
}

} // namespace cnet::view
