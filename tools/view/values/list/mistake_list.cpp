#include "view/values/list/mistake_list.h"

#include "view/look/colours.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QToolButton>
#include <QTreeWidget>

#include <algorithm>

namespace cnet::view {

namespace {

constexpr int kTextColumn = 3;
constexpr int kLinesShown = 6;

} // namespace

MistakeList::MistakeList(QWidget *parent)
    : QFrame(parent)
    , m_heading(new QLabel)
    , m_rows(new QTreeWidget)
{
    setFrameShape(StyledPanel);
    m_heading->setTextFormat(Qt::PlainText);
    m_heading->setWordWrap(true);
    m_rows->setHeaderLabels({tr("Line"), tr("Column"), tr("Field"), tr("What is wrong")});
    m_rows->setRootIsDecorated(false);
    m_rows->setUniformRowHeights(true);
    m_rows->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_rows->setAccessibleName(tr("Mistakes in the file"));
    m_rows->header()->setStretchLastSection(true);
    auto *const close = new QToolButton;
    close->setText(tr("Close"));
    close->setAccessibleName(tr("Close the list of mistakes"));
    close->setAutoRaise(true);
    connect(close, &QToolButton::clicked, this, &MistakeList::clear);
    auto *const copying = new QAction(tr("Copy"), this);
    copying->setShortcut(QKeySequence::Copy);
    copying->setShortcutContext(Qt::WidgetShortcut);
    connect(copying, &QAction::triggered, this, &MistakeList::copy);
    m_rows->addAction(copying);
    m_rows->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto *const top = new QHBoxLayout;
    top->addWidget(m_heading, 1);
    top->addWidget(close, 0, Qt::AlignTop);
    auto *const column = new QVBoxLayout(this);
    column->addLayout(top);
    column->addWidget(m_rows);
    hide();
}

void MistakeList::tell(const QString &heading, const Findings &mistakes)
{
    clear();
    QPalette own = palette();
    own.setColor(QPalette::WindowText, toneColour(Tone::Bad, own));
    m_heading->setPalette(own);
    m_heading->setText(heading);
    QList<QTreeWidgetItem *> items;
    for (const Finding &finding : mistakes.first()) {
        const auto number = [](int value) {
            return value > 0 ? QString::number(value) : QString();
        };
        items.append(new QTreeWidgetItem(QStringList{number(finding.line), number(finding.column),
                                                     finding.field, finding.text}));
        items.last()->setToolTip(kTextColumn, finding.text);
    }
    m_rows->addTopLevelItems(items);
    for (int i = 0; i < kTextColumn; ++i) {
        m_rows->resizeColumnToContents(i);
    }
    const int lines = std::clamp(static_cast<int>(items.size()), 1, kLinesShown);
    m_rows->setFixedHeight(m_rows->header()->sizeHint().height() + 2 * m_rows->frameWidth() +
                           (lines + 1) * m_rows->sizeHintForRow(0));
    show();
}

void MistakeList::clear()
{
    m_heading->clear();
    m_rows->clear();
    hide();
}

QString MistakeList::heading() const
{
    return m_heading->text();
}

void MistakeList::copy() const
{
    QStringList lines;
    const QList<QTreeWidgetItem *> items = m_rows->selectedItems();
    for (const QTreeWidgetItem *const item : items) {
        lines.append(
            QStringList({item->text(0), item->text(1), item->text(2), item->text(kTextColumn)})
                .join(QLatin1Char('\t')));
    }
    QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

} // namespace cnet::view
