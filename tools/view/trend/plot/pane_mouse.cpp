#include "view/trend/plot/pane_mouse.h"

#include <qwt_scale_widget.h>

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace cnet::view {

namespace {

constexpr double kWheelFactor = 0.8; ///< of a step
constexpr double kWheelStep = 120;   ///< see QWheelEvent::angleDelta()
constexpr double kWheelPan = 0.1;    ///< of what is seen, for a step to the side
constexpr double kLeastBox = 4;      ///< across, in what a drag takes to begin

QPointF placeOf(const QMouseEvent &event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event.position();
#else
    return event.localPos();
#endif
}

bool hasMoved(const QPointF &from, const QPointF &to)
{
    return (to - from).manhattanLength() >= QApplication::startDragDistance();
}

} // namespace

PaneMouse::PaneMouse(Pane &pane, int number, TrendView &view, Cursors &cursors)
    : QObject(&pane)
    , m_pane(pane)
    , m_canvas(pane.canvas())
    , m_leftScale(pane.axisWidget(QwtPlot::yLeft))
    , m_number(number)
    , m_view(view)
    , m_cursors(cursors)
    , m_band(new QRubberBand(QRubberBand::Rectangle, pane.canvas()))
{
    pane.canvas()->setMouseTracking(true);
    pane.canvas()->installEventFilter(this);
    pane.axisWidget(QwtPlot::yLeft)->installEventFilter(this);
    pane.axisWidget(QwtPlot::yRight)->installEventFilter(this);
}

void PaneMouse::cancel()
{
    m_drag = Drag::None;
    m_band->hide();
}

bool PaneMouse::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_canvas) {
        return filterCanvas(event);
    }
    return filterScale(watched == m_leftScale ? Side::Left : Side::Right, event);
}

bool PaneMouse::filterCanvas(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return press(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseMove:
        return move(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonRelease:
        return release(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonDblClick:
        cancel();
        Q_EMIT doubleClicked(m_pane.timeAt(placeOf(*static_cast<QMouseEvent *>(event)).x()));
        return true;
    case QEvent::Wheel:
        return wheel(*static_cast<QWheelEvent *>(event));
    default:
        return false;
    }
}

bool PaneMouse::filterScale(Side side, QEvent *event)
{
    if (m_number < 0) {
        return false;
    }
    if (event->type() == QEvent::MouseButtonDblClick) {
        m_view.remember(Gesture::Step);
        m_view.setScaling(m_number, side, Scaling::Auto);
        return true;
    }
    if (event->type() == QEvent::Wheel) {
        const auto &turn = *static_cast<QWheelEvent *>(event);
        m_view.remember(Gesture::Wheel);
        zoomValues(side, std::pow(kWheelFactor, turn.angleDelta().y() / kWheelStep),
                   turn.position().y());
        return true;
    }
    return false;
}

PaneMouse::Drag PaneMouse::cursorAt(double x) const
{
    const int near = QApplication::startDragDistance() / 2 + 1;
    const auto isAt = [this, x, near](Cursor cursor) {
        const auto at = m_cursors.at(cursor);
        return at && std::fabs(m_pane.xOf(*at) - x) <= near;
    };
    if (m_cursors.active() == Cursor::B && isAt(Cursor::B)) {
        return Drag::CursorB;
    }
    if (isAt(Cursor::A)) {
        return Drag::CursorA;
    }
    return isAt(Cursor::B) ? Drag::CursorB : Drag::None;
}

bool PaneMouse::press(const QMouseEvent &event)
{
    const bool isLeft = event.button() == Qt::LeftButton;
    if (!isLeft && event.button() != Qt::MiddleButton) {
        Q_EMIT pressed();
        return false; // a menu
    }
    m_start = placeOf(event);
    m_before = m_view.sight();
    m_hasMoved = false;
    const bool isPan = !isLeft || (event.modifiers() & Qt::ShiftModifier) != 0;
    const Drag cursor = isPan ? Drag::None : cursorAt(m_start.x());
    m_drag = isPan ? Drag::Pan : cursor != Drag::None ? cursor : Drag::Box;
    if (cursor != Drag::None) {
        m_cursors.setActive(cursor == Drag::CursorA ? Cursor::A : Cursor::B);
    }
    Q_EMIT pressed();
    return true;
}

void PaneMouse::showPointer(const QPointF &at)
{
    const bool isCursor = cursorAt(at.x()) != Drag::None;
    m_pane.canvas()->setCursor(isCursor ? Qt::SplitHCursor : Qt::CrossCursor);
}

bool PaneMouse::move(const QMouseEvent &event)
{
    const QPointF at = placeOf(event);
    if (m_drag == Drag::None) {
        showPointer(at);
        return false;
    }
    if (m_drag == Drag::CursorA || m_drag == Drag::CursorB) {
        const double atMs = m_pane.timeAt(at.x());
        const Range &time = m_view.sight().time;
        m_cursors.place(m_drag == Drag::CursorA ? Cursor::A : Cursor::B,
                        std::clamp(atMs, time.from, time.to));
        return true;
    }
    if (!m_hasMoved && !hasMoved(m_start, at)) {
        return true;
    }
    if (m_drag == Drag::Pan) {
        if (!m_hasMoved) {
            m_view.remember(Gesture::Step);
        }
        pan(at);
    } else {
        const QRect box = QRectF(m_start, at).normalized().toAlignedRect();
        m_band->setGeometry(box.intersected(m_pane.canvas()->contentsRect()));
        m_band->show();
    }
    m_hasMoved = true;
    return true;
}

bool PaneMouse::release(const QMouseEvent &event)
{
    if (m_drag == Drag::None || (event.buttons() & (Qt::LeftButton | Qt::MiddleButton)) != 0) {
        return false;
    }
    const bool isBox = m_drag == Drag::Box && m_hasMoved;
    cancel();
    if (isBox) {
        zoomBox(placeOf(event));
    }
    return true;
}

Range PaneMouse::values(Side side, double top, double bottom) const
{
    return {m_pane.valueAt(side, bottom), m_pane.valueAt(side, top)};
}

void PaneMouse::zoomBox(const QPointF &to)
{
    const QRectF box = QRectF(m_start, to).normalized() & QRectF(m_pane.canvas()->contentsRect());
    const double least = kLeastBox;
    if (box.width() < least) {
        return;
    }
    const Range left = values(Side::Left, box.top(), box.bottom());
    const Range right = values(Side::Right, box.top(), box.bottom());
    const Range time{m_pane.timeAt(box.left()), m_pane.timeAt(box.right())};
    m_view.remember(Gesture::Step);
    // A flat box means the time alone.
    if (m_number >= 0 && box.height() >= QApplication::startDragDistance() * 2) {
        m_view.setScale(m_number, Side::Left, left);
        m_view.setScale(m_number, Side::Right, right);
    }
    m_view.setTime(time);
}

void PaneMouse::pan(const QPointF &to)
{
    const double width = std::max(1, m_pane.canvas()->contentsRect().width());
    const double height = std::max(1, m_pane.canvas()->contentsRect().height());
    const double by = (m_start.x() - to.x()) / width * m_before.time.length();
    m_view.setTime({m_before.time.from + by, m_before.time.to + by});
    if (m_number < 0 || m_number >= static_cast<int>(m_before.panes.size())) {
        return;
    }
    for (const Side side : {Side::Left, Side::Right}) {
        const Scale scale = m_before.panes[static_cast<size_t>(m_number)].of(side);
        if (scale.scaling == Scaling::Fixed) {
            const double up = (to.y() - m_start.y()) / height * scale.range.length();
            m_view.setScale(m_number, side, {scale.range.from + up, scale.range.to + up});
        }
    }
}

void PaneMouse::zoomValues(Side side, double factor, double y)
{
    const auto &panes = m_view.sight().panes;
    if (m_number < 0 || m_number >= static_cast<int>(panes.size())) {
        return;
    }
    const Range range = panes[static_cast<size_t>(m_number)].of(side).range;
    const double about = std::clamp(values(side, y, y).from, range.from, range.to);
    m_view.setScale(m_number, side,
                    {about - (about - range.from) * factor, about + (range.to - about) * factor});
}

bool PaneMouse::wheel(const QWheelEvent &event)
{
    const QPoint turn = event.angleDelta();
    if (turn.isNull()) {
        return false;
    }
    const double factor = std::pow(kWheelFactor, turn.y() / kWheelStep);
    m_view.remember(Gesture::Wheel);
    if ((event.modifiers() & Qt::ControlModifier) != 0) {
        zoomValues(Side::Left, factor, event.position().y());
        zoomValues(Side::Right, factor, event.position().y());
    } else if (turn.y() != 0) {
        const Range &time = m_view.sight().time;
        m_view.zoomTime(factor,
                        std::clamp(m_pane.timeAt(event.position().x()), time.from, time.to));
    } else {
        m_view.panTime(-turn.x() / kWheelStep * kWheelPan * m_view.sight().time.length());
    }
    return true;
}

} // namespace cnet::view
