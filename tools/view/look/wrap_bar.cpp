#include "view/look/wrap_bar.h"

#include <QAction>
#include <QFrame>
#include <QStyle>
#include <QToolButton>

#include <algorithm>

namespace cnet::view {

WrapBar::WrapBar(QWidget *parent)
    : QWidget(parent)
{
    new WrapLayout(this);
}

void WrapBar::add(const QList<QAction *> &actions)
{
    for (QAction *const action : actions) {
        auto *const button = new QToolButton;
        button->setDefaultAction(action);
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus); // each has a key of its own
        add(button);
    }
}

void WrapBar::add(QWidget *field)
{
    layout()->addWidget(field);
}

void WrapBar::addSeparator()
{
    auto *const line = new QFrame;
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    line->setFixedHeight(fontMetrics().height());
    add(line);
}

WrapLayout::WrapLayout(QWidget *parent)
    : QLayout(parent)
{
    setContentsMargins(0, 0, 0, 0);
    setSpacing(parent->fontMetrics().averageCharWidth() / 2);
}

WrapLayout::~WrapLayout()
{
    qDeleteAll(m_items);
}

QLayoutItem *WrapLayout::takeAt(int index)
{
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

int WrapLayout::heightForWidth(int width) const
{
    return place(QRect(0, 0, width, 0), Moving::No);
}

void WrapLayout::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    place(rect, Moving::Yes);
}

QSize WrapLayout::sizeHint() const
{
    QSize size;
    for (const QLayoutItem *const item : m_items) {
        const QSize one = item->sizeHint();
        size = QSize(size.width() + one.width() + spacing(), std::max(size.height(), one.height()));
    }
    return size;
}

QSize WrapLayout::minimumSize() const
{
    QSize size;
    for (const QLayoutItem *const item : m_items) {
        size = size.expandedTo(item->minimumSize());
    }
    return size;
}

int WrapLayout::place(const QRect &rect, Moving moving) const
{
    const int rowHeight = sizeHint().height();
    int x = 0;
    int y = 0;
    for (QLayoutItem *const item : m_items) {
        if (item->isEmpty()) {
            continue;
        }
        const QSize size = item->sizeHint();
        if (x > 0 && x + size.width() > rect.width()) {
            x = 0;
            y += rowHeight + spacing();
        }
        if (moving == Moving::Yes) {
            const QPoint middle(0, (rowHeight - size.height()) / 2);
            const QRect left(rect.topLeft() + QPoint(x, y) + middle, size);
            item->setGeometry(QStyle::visualRect(parentWidget()->layoutDirection(), rect, left));
        }
        x += size.width() + spacing();
    }
    return y + rowHeight;
}

} // namespace cnet::view
