#include "view/recipes/recipes_page.h"

#include "view/look/colours.h"
#include "view/look/wrap_bar.h"
#include "view/recipes/mistakes_view.h"
#include "view/recipes/question_bar.h"
#include "view/recipes/recipe_delegate.h"

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableView>
#include <QVBoxLayout>

namespace cnet::view {

namespace {

QString emptyText()
{
    return RecipesPage::tr(
        "No recipe is open.\n\n"
        "A recipe is a CSV file of values that go to the PLC together. Its first line names the "
        "columns, each other line is a row of words:\n\n"
        "station,register,address,count,value\n"
        "1,D_W,200,3,100,250,0x01FF\n\n"
        "Open one, or drop it here.");
}

} // namespace

RecipesPage::RecipesPage(WatchedTags &tags, QWidget *parent)
    : Page(parent)
    , m_tags(tags)
    , m_rows(m_model)
    , m_stack(new QStackedWidget(this))
    , m_empty(new QWidget(this))
    , m_table(new QTableView(this))
    , m_mistakes(new MistakesView(this))
    , m_question(new QuestionBar(this))
    , m_summary(new QLabel(this))
    , m_progressRow(new QWidget(this))
    , m_doing(new QLabel(m_progressRow))
    , m_bar(new QProgressBar(m_progressRow))
    , m_cancel(new QPushButton(tr("Cance&l"), m_progressRow))
{
    setAcceptDrops(true);
    makeTable();
    makeActions();
    wire();
    nameRows();
    refresh();
}

RecipesPage::~RecipesPage()
{
    // What they tell while they go would reach a page that is half gone.
    m_transfer.disconnect(this);
    m_model.disconnect(this);
    m_model.undo().disconnect(this);
    m_table->itemDelegateForColumn(RecipeModel::kValue)->disconnect(this);
    m_table->setModel(nullptr);
}

QString RecipesPage::title() const
{
    return tr("&Recipes");
}

void RecipesPage::makeTable()
{
    m_table->setModel(&m_rows);
    auto *const delegate = new RecipeDelegate(this);
    m_table->setItemDelegateForColumn(RecipeModel::kValue, delegate);
    connect(delegate, &RecipeDelegate::typed, this, &RecipesPage::showTyped);
    m_table->setAccessibleName(tr("Recipe and PLC side by side"));
    m_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                             QAbstractItemView::AnyKeyPressed);
    m_table->setTabKeyNavigation(false);
    m_table->verticalHeader()->hide();
    QHeaderView *const header = m_table->horizontalHeader();
    header->setHighlightSections(false);
    header->setSectionResizeMode(RecipeModel::kState, QHeaderView::Stretch);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
}

QAction *RecipesPage::makeAction(WrapBar &bar, const QString &text, const QString &tip,
                                 const QKeySequence &keys, void (RecipesPage::*then)())
{
    auto *const action = new QAction(text, this);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setToolTip(keys.isEmpty() ? tip
                                      : QString::fromLatin1("%1 (%2)").arg(
                                            tip, keys.toString(QKeySequence::NativeText)));
    addAction(action);
    bar.add({action});
    connect(action, &QAction::triggered, this, then);
    return action;
}

void RecipesPage::makeActions()
{
    auto *const bar = new WrapBar(this);
    bar->setAccessibleName(tr("Recipe"));
    const auto keys = [](const char *text) { return QKeySequence(QLatin1String(text)); };
    m_open = makeAction(*bar, tr("&Open..."), tr("Open a recipe file"), keys("Ctrl+Shift+O"),
                        &RecipesPage::chooseOpen);
    m_readAgain = makeAction(*bar, tr("Read a&gain"), tr("Read the file again from the disk"),
                             keys("Ctrl+Shift+R"), &RecipesPage::readAgain);
    m_save = makeAction(*bar, tr("&Save"), tr("Save the recipe in its file"), keys("Ctrl+Shift+S"),
                        &RecipesPage::save);
    m_saveAs = makeAction(*bar, tr("Save &as..."), tr("Save the recipe in another file"),
                          keys("Ctrl+Alt+S"), &RecipesPage::chooseSave);
    bar->addSeparator();
    m_undo = makeAction(*bar, tr("&Undo"), tr("Undo the last edit"), QKeySequence::Undo,
                        &RecipesPage::undo);
    m_redo = makeAction(*bar, tr("Re&do"), tr("Redo what was undone"), QKeySequence::Redo,
                        &RecipesPage::redo);
    bar->addSeparator();
    m_compare = makeAction(*bar, tr("&Compare with PLC"),
                           tr("Read what the PLC has, and mark what differs"), keys("Ctrl+Shift+C"),
                           &RecipesPage::compare);
    m_onlyDifferences =
        makeAction(*bar, tr("Only di&fferences"), tr("Show only rows that differ from the PLC"),
                   keys("Ctrl+Shift+D"), &RecipesPage::showDifferences);
    m_onlyDifferences->setCheckable(true);
    m_take = makeAction(*bar, tr("&Take from PLC"),
                        tr("Read the values of the PLC into the recipe; to be undone at once"),
                        keys("Ctrl+Shift+T"), &RecipesPage::take);
    m_write = makeAction(*bar, tr("&Write to PLC"),
                         tr("Write the recipe to the PLC, and read back whether it has it"),
                         keys("Ctrl+Shift+W"), &RecipesPage::write);
    const auto ofTable = [this](const QString &text, const QKeySequence &sequence,
                                void (RecipesPage::*then)()) {
        auto *const action = new QAction(text, m_table);
        action->setShortcut(sequence);
        action->setShortcutContext(Qt::WidgetShortcut);
        m_table->addAction(action);
        connect(action, &QAction::triggered, this, then);
    };
    ofTable(tr("&Copy"), QKeySequence::Copy, &RecipesPage::copy);
    ofTable(tr("&Paste values"), QKeySequence::Paste, &RecipesPage::paste);
    layOut(bar);
}

void RecipesPage::layOut(WrapBar *bar)
{
    auto *const text = new QLabel(emptyText(), m_empty);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto *const open = new QPushButton(tr("Open a reci&pe..."), m_empty);
    connect(open, &QPushButton::clicked, m_open, &QAction::trigger);
    auto *const middle = new QVBoxLayout(m_empty);
    auto *const words = new QVBoxLayout;
    words->addWidget(text); // not aligned, so that it is as high as its lines
    words->addWidget(open, 0, Qt::AlignLeft);
    auto *const wide = new QHBoxLayout;
    wide->addStretch(1);
    wide->addLayout(words, 3);
    wide->addStretch(1);
    middle->addStretch(1);
    middle->addLayout(wide);
    middle->addStretch(2);
    m_stack->addWidget(m_empty);
    m_stack->addWidget(m_table);
    m_stack->addWidget(m_mistakes);

    m_bar->setAccessibleName(tr("Progress of the transfer"));
    m_bar->setFormat(tr("%v of %m words"));
    auto *const progressRow = new QHBoxLayout(m_progressRow);
    progressRow->setContentsMargins(0, 0, 0, 0);
    progressRow->addWidget(m_doing);
    progressRow->addWidget(m_bar, 1);
    progressRow->addWidget(m_cancel);
    m_progressRow->hide();

    m_summary->setTextFormat(Qt::PlainText);
    m_summary->setWordWrap(true);
    m_summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_summary->setAccessibleName(tr("State of the recipe"));
    auto *const column = new QVBoxLayout(this);
    column->addWidget(bar);
    column->addWidget(m_question);
    column->addWidget(m_stack, 1);
    column->addWidget(m_progressRow);
    column->addWidget(m_summary);
    setFocusProxy(m_table);
}

void RecipesPage::wire()
{
    connect(m_cancel, &QPushButton::clicked, this, &RecipesPage::cancelTransfer);
    connect(&m_model, &RecipeModel::edited, this, [this] {
        refresh();
        Q_EMIT changed();
    });
    connect(&m_model.undo(), &QUndoStack::indexChanged, this, &RecipesPage::refresh);
    connect(&m_transfer, &RecipeTransfer::progressed, this, &RecipesPage::progress);
    connect(&m_transfer, &RecipeTransfer::finished, this, &RecipesPage::end);
    Line &line = m_tags.line();
    connect(&line, &Line::sessionBegan, this, &RecipesPage::sessionBegan);
    connect(&line, &Line::sessionEnding, this, &RecipesPage::sessionEnds);
    connect(&line, &Line::stateChanged, this, &RecipesPage::refresh);
    connect(&m_tags, &WatchedTags::tagsChanged, this, &RecipesPage::nameRows);
}

void RecipesPage::nameRows()
{
    QHash<QString, QString> names;
    for (const Tag &tag : m_tags.tags().all()) {
        if (!tag.name.isEmpty() && tag.item.count > 0 && !tag.item.reg.isBit()) {
            names.insert(QString::fromLatin1("%1/%2:%3")
                             .arg(tag.item.station)
                             .arg(tag.item.reg.name, tag.item.addressText(0)),
                         tag.name);
        }
    }
    m_model.setTagNames(names);
}

void RecipesPage::refresh()
{
    const bool isIdle = !m_transfer.isRunning();
    const bool isShown = m_model.sheet() != nullptr;
    const bool isOpen = m_tags.line().isOpen();
    m_open->setEnabled(isIdle);
    m_readAgain->setEnabled(isIdle && !m_path.isEmpty());
    m_save->setEnabled(isShown && isIdle && hasUnsavedEdits());
    m_saveAs->setEnabled(isShown && isIdle);
    m_undo->setEnabled(isIdle && m_model.undo().canUndo());
    m_redo->setEnabled(isIdle && m_model.undo().canRedo());
    for (QAction *const action : {m_compare, m_take, m_write}) {
        action->setEnabled(isShown && isIdle && isOpen);
    }
    m_onlyDifferences->setEnabled(isShown);
    m_progressRow->setVisible(!isIdle);
    updateSummary();
}

void RecipesPage::updateSummary()
{
    QPalette colours = palette();
    if (m_isBad) {
        colours.setColor(QPalette::WindowText, toneColour(Tone::Bad, colours));
    }
    m_summary->setPalette(colours);
    if (m_model.sheet() == nullptr) {
        m_summary->setText(m_outcome);
        return;
    }
    const RowCounts counts = m_model.counts();
    QStringList parts{m_path + QLatin1String(": ") + tr("%n words", "", counts.rows)};
    if (counts.missing > 0) {
        parts.append(tr("%n without a value", "", counts.missing));
    }
    if (!m_model.isCompared()) {
        parts.append(tr("not compared with the PLC yet"));
    } else {
        parts.append(tr("%n the same", "", counts.same));
        parts.append(tr("%n different", "", counts.different));
        if (counts.unknown > 0) {
            parts.append(tr("%n not known", "", counts.unknown));
        }
        parts.append(tr("PLC as at %1").arg(m_plcAt));
    }
    if (hasUnsavedEdits()) {
        parts.append(tr("not saved"));
    }
    const QString text = parts.join(QLatin1String(", "));
    m_summary->setText(m_outcome.isEmpty() ? text : m_outcome + QLatin1Char('\n') + text);
}

void RecipesPage::showTyped(const QString &mistake)
{
    if (mistake.isEmpty()) {
        updateSummary();
    } else {
        m_summary->setText(mistake);
    }
}

} // namespace cnet::view
