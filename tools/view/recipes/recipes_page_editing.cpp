#include "view/recipes/recipes_page.h"

#include <QAbstractItemDelegate>
#include <QAction>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QMimeData>
#include <QRegularExpression>
#include <QTableView>

#include <algorithm>

namespace cnet::view {

namespace {

QString onlyFileOf(const QMimeData *data)
{
    const auto urls = data->urls();
    return urls.size() == 1 ? urls.first().toLocalFile() : QString();
}

} // namespace

// The keys and buttons of the page leave an open editor as it is, and what it shows is meant.
bool RecipesPage::endEditing()
{
    QAbstractItemDelegate *const delegate = m_table->itemDelegateForColumn(RecipeModel::kValue);
    const auto fields = m_table->viewport()->findChildren<QLineEdit *>();
    for (QLineEdit *const field : fields) {
        if (field->isHidden()) { // it has ended, and goes
            continue;
        }
        const bool isUntouched =
            field->text().isEmpty() && field->accessibleDescription().isEmpty();
        if (!isUntouched && !field->hasAcceptableInput()) {
            Q_EMIT troubled(field->accessibleDescription(), tr("Correct it, or press Esc."));
            return false;
        }
        Q_EMIT delegate->commitData(field);
        Q_EMIT delegate->closeEditor(field);
    }
    return true;
}

void RecipesPage::undo()
{
    if (!m_transfer.isRunning()) {
        m_model.undo().undo();
    }
}

void RecipesPage::redo()
{
    if (!m_transfer.isRunning()) {
        m_model.undo().redo();
    }
}

void RecipesPage::copy()
{
    QModelIndexList chosen = m_table->selectionModel()->selectedIndexes();
    std::sort(chosen.begin(), chosen.end());
    QString text;
    for (int i = 0; i < chosen.size(); ++i) {
        if (i > 0) {
            text += QLatin1Char(chosen.at(i).row() == chosen.at(i - 1).row() ? '\t' : '\n');
        }
        text += chosen.at(i).data().toString();
    }
    if (!chosen.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}

void RecipesPage::paste()
{
    const QModelIndex current = m_table->currentIndex();
    if (!current.isValid() || m_transfer.isRunning()) {
        return;
    }
    static const QRegularExpression between(QLatin1String("[\\s,;]+"));
    const QStringList texts =
        QGuiApplication::clipboard()->text().split(between, Qt::SkipEmptyParts);
    QVector<int> rows;
    for (int row = current.row(); row < m_rows.rowCount(); ++row) {
        rows.append(m_rows.mapToSource(m_rows.index(row, 0)).row());
    }
    QString error;
    if (!m_model.paste(rows, texts, error)) {
        Q_EMIT troubled(error, tr("Nothing was pasted."));
    }
}

void RecipesPage::showDifferences()
{
    m_rows.setShown(m_onlyDifferences->isChecked() ? DifferencesFilter::Shown::Differences
                                                   : DifferencesFilter::Shown::All);
    updateSummary();
    Q_EMIT changed();
}

void RecipesPage::dragEnterEvent(QDragEnterEvent *event)
{
    if (!onlyFileOf(event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void RecipesPage::dropEvent(QDropEvent *event)
{
    const QString path = onlyFileOf(event->mimeData());
    if (!path.isEmpty()) {
        event->acceptProposedAction();
        openFile(path);
    }
}

} // namespace cnet::view
