#include "view/trend/plot/trend_plot.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>

namespace cnet::view {

namespace {

constexpr double kKeyPan = 0.1;  ///< of what is seen
constexpr double kKeyZoom = 0.8; ///< of values
constexpr int kManyPixels = 10;  ///< that a cursor moves with Shift

} // namespace

void TrendPlot::moveSideways(int direction, Qt::KeyboardModifiers modifiers)
{
    const Range time = m_view.sight().time;
    const auto cursor = m_cursors.active();
    if (cursor && (modifiers & Qt::ControlModifier) == 0) {
        const int pixels = std::max(1, shown().back()->canvas()->contentsRect().width());
        const int steps = (modifiers & Qt::ShiftModifier) != 0 ? kManyPixels : 1;
        const double to = *m_cursors.at(*cursor) + direction * steps * time.length() / pixels;
        m_cursors.place(*cursor, std::clamp(to, time.from, time.to));
        return;
    }
    m_view.remember(Gesture::Keys);
    m_view.panTime(direction * kKeyPan * time.length());
}

void TrendPlot::keyPressEvent(QKeyEvent *event)
{
    const bool isWithControl = (event->modifiers() & Qt::ControlModifier) != 0;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        moveSideways(event->key() == Qt::Key_Left ? -1 : 1, event->modifiers());
        return;
    case Qt::Key_Up:
    case Qt::Key_Down: {
        const bool isUp = event->key() == Qt::Key_Up;
        m_view.remember(Gesture::Keys);
        if (isWithControl) {
            m_view.zoomValues(m_current, isUp ? kKeyZoom : 1 / kKeyZoom);
        } else {
            m_view.panValues(m_current, isUp ? kKeyPan : -kKeyPan);
        }
        return;
    }
    case Qt::Key_PageUp:
        setCurrent(m_current - 1);
        return;
    case Qt::Key_PageDown:
        setCurrent(m_current + 1);
        return;
    case Qt::Key_Escape:
        for (PaneMouse *mouse : m_mice) {
            mouse->cancel();
        }
        m_cursors.setActive(std::nullopt);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void TrendPlot::contextMenuEvent(QContextMenuEvent *event)
{
    if (m_menu == nullptr) {
        return;
    }
    const auto seen = shown();
    const bool isMouse = event->reason() == QContextMenuEvent::Mouse;
    if (isMouse && !seen.empty()) {
        Pane *any = seen.back();
        const QPoint place = any->canvas()->mapFromGlobal(event->globalPos());
        if (any->canvas()->contentsRect().contains(place.x(), 1)) {
            m_menuAtMs = any->timeAt(place.x());
        }
    }
    m_menu->popup(isMouse ? event->globalPos() : mapToGlobal(rect().center()));
}

} // namespace cnet::view
