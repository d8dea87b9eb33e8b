#include "view/recipes/mistakes_view.h"
#include "view/recipes/question_bar.h"
#include "view/recipes/recipes_page.h"

#include "host/text/whole_file.h"

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QJsonArray>
#include <QSaveFile>
#include <QStackedWidget>
#include <QStyle>
#include <QTableView>

#include <utility>

namespace cnet::view {

namespace {

// Far more than all words of all stations take.
constexpr qint64 kLongestFile = 8 * 1024 * 1024;
const QLatin1String kFile("file");
const QLatin1String kOnlyDifferences("onlyDifferences");
const QLatin1String kEdits("edits");
const QLatin1String kAddress("address");
const QLatin1String kValue("value");

QString fileFilter()
{
    return RecipesPage::tr("Recipes (*.csv);;All files (*)");
}

/** @param error receives what is wrong when the result is empty */
std::optional<QByteArray> contentOf(const QString &path, QString &error)
{
    if (isNoFile(path)) {
        error = RecipesPage::tr("it is no file");
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = file.errorString();
        return std::nullopt;
    }
    QByteArray content = file.read(kLongestFile + 1);
    if (file.error() != QFileDevice::NoError) {
        error = file.errorString();
        return std::nullopt;
    }
    if (content.size() > kLongestFile) {
        error = RecipesPage::tr("it is longer than a recipe can be, %1 bytes").arg(kLongestFile);
        return std::nullopt;
    }
    return content;
}

bool isSameFile(const QString &left, const QString &right)
{
    const QFileInfo first(left);
    const QFileInfo second(right);
    return !left.isEmpty() && (first.absoluteFilePath() == second.absoluteFilePath() ||
                               (first.exists() && first == second));
}

} // namespace

QJsonObject RecipesPage::saved() const
{
    QJsonObject state{{kFile, m_path}, {kOnlyDifferences, m_onlyDifferences->isChecked()}};
    QJsonArray edits;
    for (const RowEdit &edit : m_model.edits()) {
        const QString address = m_model.sheet()->rows().at(edit.row).address;
        QJsonObject one{{kAddress, address}};
        if (edit.after) {
            one.insert(kValue, *edit.after);
        }
        edits.append(one);
    }
    if (m_model.sheet() == nullptr) {
        edits = m_unapplied;
    }
    if (!edits.isEmpty()) {
        state.insert(kEdits, edits);
    }
    return state;
}

void RecipesPage::restore(const QJsonObject &state)
{
    m_transfer.leaveSession(tr("another file was opened"));
    m_question->clear();
    m_onlyDifferences->setChecked(state.value(kOnlyDifferences).toBool());
    showDifferences();
    closeFile();
    const QString path = state.value(kFile).toString();
    if (path.isEmpty()) {
        return;
    }
    // It may be on a disk that is not there today: the project goes on naming it, and its edits.
    m_path = path;
    m_unapplied = state.value(kEdits).toArray();
    if (!readFile(m_path)) {
        refresh();
    }
}

void RecipesPage::restoreEdits(const QJsonArray &edits)
{
    QHash<QString, int> rows;
    const auto &all = m_model.sheet()->rows();
    for (int row = 0; row < all.size(); ++row) {
        rows.insert(all.at(row).address, row);
    }
    QVector<RowEdit> found;
    int lost = 0;
    for (const auto &entry : edits) {
        const QJsonObject edit = entry.toObject();
        const int row = rows.value(edit.value(kAddress).toString(), -1);
        const QJsonValue value = edit.value(kValue);
        const int number = value.toInt(-1);
        if (row < 0 || (!value.isUndefined() && (number < 0 || number > 0xFFFF))) {
            ++lost;
            continue;
        }
        found.append({row, std::nullopt,
                      value.isUndefined() ? std::nullopt
                                          : std::optional<quint16>(static_cast<quint16>(number))});
    }
    m_model.edit(found, tr("edits of the project"));
    if (lost > 0) {
        Q_EMIT troubled(tr("%n edits of the project do not fit the file any more.", "", lost),
                        tr("Look through %1: it was changed since.").arg(m_path));
    }
}

bool RecipesPage::hasUnsavedEdits() const
{
    return m_model.sheet() != nullptr && !m_model.edits().isEmpty();
}

RecipeReading RecipesPage::reading() const
{
    Line &line = m_tags.line();
    return {line.connection().station, line.registers(), [&line](const Item &item, QString &why) {
                return line.driver().check(item, Access::Read, why);
            }};
}

bool RecipesPage::openFile(const QString &path)
{
    if (!m_transfer.isRunning() && !endEditing()) {
        return false;
    }
    if (m_transfer.isRunning() || !hasUnsavedEdits()) {
        return readFile(path);
    }
    m_question->ask(tr("%1 has edits that are not saved.").arg(m_path),
                    {{tr("&Keep editing"), {}},
                     {tr("&Save, then open"),
                      [this, path] {
                          if (saveFile(m_path)) {
                              readFile(path);
                          }
                      }},
                     {tr("Open &without saving"), [this, path] { readFile(path); }}});
    return false;
}

bool RecipesPage::readFile(const QString &path)
{
    // A question may be answered later than it was asked.
    if (m_transfer.isRunning()) {
        Q_EMIT troubled(tr("%1 was not opened: a transfer is running.").arg(path),
                        tr("Cancel it, or wait until it has ended."));
        return false;
    }
    QString why;
    const auto content = contentOf(path, why);
    if (!content) {
        Q_EMIT troubled(tr("Cannot read %1: %2").arg(path, why),
                        tr("Check the name of the file and who may read it."));
        return false;
    }
    m_question->clear();
    if (!isSameFile(path, m_path)) {
        m_unapplied = QJsonArray();
    }
    m_path = path;
    m_onDisk = *content;
    m_outcome.clear();
    m_isBad = false;
    QVector<Finding> mistakes;
    const auto sheet = RecipeSheet::read(*content, reading(), mistakes);
    if (sheet) {
        showSheet(*sheet);
        restoreEdits(std::exchange(m_unapplied, QJsonArray()));
    } else {
        m_model.clear();
        m_mistakes->showFile(path, *content, mistakes);
        m_stack->setCurrentWidget(m_mistakes);
    }
    refresh();
    Q_EMIT changed();
    if (!sheet) {
        Q_EMIT troubled(
            tr("%1 has mistakes: %2")
                .arg(path, mistakes.isEmpty() ? QString() : mistakes.first().placed()),
            tr("The page for recipes shows them in their places. Correct them, then read the file "
               "again."));
    }
    return sheet.has_value();
}

void RecipesPage::showSheet(const RecipeSheet &sheet)
{
    m_mistakes->clear();
    m_model.setSheet(sheet);
    m_stack->setCurrentWidget(m_table);
    sizeColumns();
    m_table->setCurrentIndex(m_rows.index(0, RecipeModel::kValue));
}

void RecipesPage::sizeColumns()
{
    QFont bold = m_table->font();
    bold.setBold(true); // as edited values are
    const int ofValues =
        QFontMetrics(bold).horizontalAdvance(QLatin1String("-32768 0x")) +
        2 * m_table->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, m_table);
    m_table->resizeColumnToContents(RecipeModel::kAddress);
    m_table->resizeColumnToContents(RecipeModel::kNote);
    m_table->setColumnWidth(RecipeModel::kValue, ofValues);
    m_table->setColumnWidth(RecipeModel::kPlc, ofValues);
    // A long comment leaves room for the values.
    const int most = QFontMetrics(bold).averageCharWidth() * 40;
    if (m_table->columnWidth(RecipeModel::kNote) > most) {
        m_table->setColumnWidth(RecipeModel::kNote, most);
    }
}

void RecipesPage::closeFile()
{
    m_path.clear();
    m_onDisk.clear();
    m_unapplied = QJsonArray();
    m_outcome.clear();
    m_isBad = false;
    m_model.clear();
    m_mistakes->clear();
    m_stack->setCurrentWidget(m_empty);
    refresh();
    Q_EMIT changed();
}

void RecipesPage::readAgain()
{
    openFile(m_path);
}

bool RecipesPage::isChangedOnDisk(const QString &path) const
{
    QString ignored;
    const auto now = contentOf(path, ignored);
    return isSameFile(path, m_path) && now && *now != m_onDisk;
}

void RecipesPage::selectRow(int row)
{
    const QModelIndex index = m_rows.mapFromSource(m_model.index(row, RecipeModel::kValue));
    if (index.isValid()) {
        m_table->setCurrentIndex(index);
        m_table->scrollTo(index);
    }
}

bool RecipesPage::saveFile(const QString &path, Overwrite overwrite)
{
    const RecipeSheet *const sheet = m_model.sheet();
    if (sheet == nullptr || path.isEmpty() || m_transfer.isRunning() || !endEditing()) {
        return false;
    }
    const int halfFilled = sheet->firstHalfFilled(m_model.values());
    if (halfFilled >= 0) {
        selectRow(halfFilled);
        Q_EMIT troubled(tr("The recipe was not saved: the row of words with %1 has some values "
                           "only.")
                            .arg(sheet->rows().at(halfFilled).address),
                        tr("Type the missing ones, or take them from the PLC."));
        return false;
    }
    if (overwrite == Overwrite::Never && isChangedOnDisk(path)) {
        m_question->ask(tr("%1 was changed by somebody else since it was read.").arg(path),
                        {{tr("&Keep editing"), {}},
                         {tr("&Replace it"), [this, path] { saveFile(path, Overwrite::Always); }}});
        return false;
    }
    const QByteArray content = sheet->contentWith(m_model.values());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !replaceFile(file, content)) {
        Q_EMIT troubled(tr("Cannot write %1: %2").arg(path, file.errorString()),
                        tr("Nothing was changed there. Save the recipe somewhere else, or make "
                           "room."));
        return false;
    }
    m_path = path;
    m_onDisk = content;
    m_model.markSaved();
    refresh();
    Q_EMIT changed();
    Q_EMIT told(tr("%1 was saved.").arg(path));
    return true;
}

void RecipesPage::save()
{
    saveFile(m_path);
}

void RecipesPage::chooseOpen()
{
    auto *const dialog =
        new QFileDialog(this, tr("Open a recipe"), QFileInfo(m_path).path(), fileFilter());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &RecipesPage::openFile);
    dialog->open();
}

void RecipesPage::chooseSave()
{
    auto *const dialog = new QFileDialog(this, tr("Save the recipe"), m_path, fileFilter());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QLatin1String("csv"));
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString &path) { saveFile(path); });
    dialog->open();
}

} // namespace cnet::view
