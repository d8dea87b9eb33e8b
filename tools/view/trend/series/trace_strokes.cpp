#include "view/trend/series/trace_strokes.h"

#include "view/trend/series/trace_series.h"

#include <algorithm>
#include <cmath>

namespace cnet::view {

namespace {

constexpr int kColumnsAhead = 4; // memory answers within that time

/** Cuts what goes past the top or the bottom off the begin of a line. */
void cutBegin(QLineF &line, double top, double bottom)
{
    const double edge = qBound(top, line.y1(), bottom);
    if (edge != line.y1()) {
        line.setP1({line.x1() + (edge - line.y1()) * (line.dx() / line.dy()), edge});
    }
}

/** Cuts a line that goes to the right to its part within a rectangle. First at the left and the
 * right, so that little of a line across ages is found exactly. @return false: there is none */
bool cut(QLineF &line, const QRectF &to)
{
    if (!std::isfinite(line.y1()) || !std::isfinite(line.y2()) || !std::isfinite(line.dy()) ||
        line.x2() < to.left() || line.x1() > to.right()) {
        return false;
    }
    const double slope = line.dx() > 0 ? line.dy() / line.dx() : 0;
    const double left = std::max(line.x1(), to.left());
    const double right = std::min(line.x2(), to.right());
    line = QLineF(left, line.y1() + (left - line.x1()) * slope, right,
                  line.y2() - (line.x2() - right) * slope);
    const double top = std::min(line.y1(), line.y2());
    const double bottom = std::max(line.y1(), line.y2());
    if (top > to.bottom() || bottom < to.top()) {
        return false;
    }
    cutBegin(line, to.top(), to.bottom());
    line = QLineF(line.p2(), line.p1());
    cutBegin(line, to.top(), to.bottom());
    line = QLineF(line.p2(), line.p1());
    return true;
}

/** Goes once over the columns from left to right, from one that has an entry to the next. */
class Walk
{
public:
    Walk(const TraceStore &store, const TraceForm &form, const TraceArea &area)
        : m_store(store)
        , m_form(form)
        , m_area(area)
        , m_left(area.pixels.left())
        , m_right(area.pixels.right())
        , m_top(area.pixels.top())
        , m_bottom(area.pixels.bottom())
        , m_isLinear(form.style == TraceStyle::Linear && !form.isLane)
        , m_lowRow(rowOfScale(form.low))
        , m_highRow(rowOfScale(form.high))
        , m_nextColumn(m_left)
    {}

    TraceStrokes strokes()
    {
        const int entries = m_store.entries();
        int at = m_store.indexAt(columnBegin(m_left));
        if (at > 0) {
            know(m_store.sample(at - 1), m_left - 2);
        }
        int length = 1; // of the entries in a column, as one expects it
        int column = m_left;
        qint64 end = columnBegin(column + 1);
        while (at < entries) {
            const TraceStore::Sample entry = m_store.sample(at);
            // Mostly the next column, whose begin is the end of the last.
            if (entry.atMs >= end) {
                column = std::max(columnOf(entry.atMs), m_nextColumn);
                end = columnBegin(column + 1);
            }
            if (column > m_right) {
                break;
            }
            leadTo(column, entry);
            const int next = std::max(m_store.indexAt(end, at + length), at + 1);
            length = next - at;
            m_store.expect(length < entries / kColumnsAhead ? next + kColumnsAhead * length
                                                            : entries);
            drawColumn(column, at, next);
            at = next;
            column = m_nextColumn;
            end = columnBegin(column + 1);
        }
        leadOut(at);
        endRun();
        return std::move(m_strokes);
    }

private:
    qint64 columnBegin(int column) const
    {
        return scaleMs(std::ceil(m_area.x.invTransform(column - 0.5)));
    }

    double xOf(qint64 atMs) const { return m_area.x.transform(static_cast<double>(atMs)); }

    /** The inverse of columnBegin(), whatever was rounded; left or right of the area at most by
     * one.
     */
    int columnOf(qint64 atMs) const
    {
        const double x = qBound(m_left - 1.0, xOf(atMs), m_right + 1.0);
        const int column = static_cast<int>(std::floor(x + 0.5));
        if (atMs < columnBegin(column)) {
            return column - 1;
        }
        return atMs >= columnBegin(column + 1) ? column + 1 : column;
    }

    /** The row of a place of the y axis, or the one above or below the area. */
    int rowOfScale(double value) const
    {
        const double y = m_area.y.transform(value);
        if (!(y < m_bottom + 1)) { // what a logarithm has no place for is below all, too
            return m_bottom + 1;
        }
        // NOLINTNEXTLINE(bugprone-incorrect-roundings): it is above 0, and lround() takes longer
        return y <= m_top - 1 ? m_top - 1 : m_top - 2 + static_cast<int>(y - (m_top - 2) + 0.5);
    }

    int rowOf(double value) const
    {
        if (!m_form.isLane) {
            return rowOfScale(value);
        }
        return value == 0 ? m_lowRow : m_highRow;
    }

    void know(const TraceStore::Sample &entry, int column)
    {
        m_isKnown = !entry.isGap;
        m_last = entry;
        m_lastColumn = column;
    }

    /** Draws what is between the last entry and that of a column further right. */
    void leadTo(int column, const TraceStore::Sample &entry)
    {
        m_isJoined = false;
        if (!m_isKnown) {
            return;
        }
        if (entry.isGap) {
            hold(xOf(entry.atMs) > column ? column : column - 1);
        } else if (!m_isLinear) {
            hold(column - 1);
            m_isJoined = true;
        } else if (column == m_lastColumn + 1) {
            m_isJoined = true;
        } else {
            slopeTo(entry);
        }
    }

    /** Draws what is behind the last entry within the area. */
    void leadOut(int next)
    {
        if (!m_isKnown) {
            return;
        }
        if (next >= m_store.entries()) {
            const double x = xOf(m_form.holdUntilMs);
            hold(static_cast<int>(std::ceil(qBound(m_left - 1.0, x, m_right + 1.0))) - 1);
            return;
        }
        const TraceStore::Sample entry = m_store.sample(next);
        if (m_isLinear && !entry.isGap) {
            slopeTo(entry);
        } else {
            hold(m_right);
        }
    }

    void slopeTo(const TraceStore::Sample &entry)
    {
        QLineF line(xOf(m_last.atMs), m_area.y.transform(m_last.value), xOf(entry.atMs),
                    m_area.y.transform(entry.value));
        if (cut(line, QRectF(m_area.pixels).adjusted(-1, -1, 0, 0))) {
            m_strokes.slopes.push_back(line);
        }
    }

    /** Draws the last value up to a column. */
    void hold(int column)
    {
        const int end = std::min(column, m_right);
        if (m_nextColumn > end) {
            return;
        }
        const int row = rowOf(m_last.value);
        addRun(m_nextColumn, end, row);
        if (m_form.isLane && m_last.value != 0) {
            addFill(m_nextColumn, end);
        }
        m_nextColumn = end + 1;
    }

    void drawColumn(int column, int from, int to)
    {
        const TraceStore::Span span = m_store.span(from, to);
        m_strokes.samples += span.count;
        if (span.count > 0) {
            double least = span.least;
            double greatest = span.greatest;
            if (m_isJoined) {
                least = std::min(least, m_last.value);
                greatest = std::max(greatest, m_last.value);
            }
            if (m_form.isLane) {
                drawLaneColumn(column, least, greatest);
            } else {
                const int one = rowOfScale(least);
                const int other = rowOfScale(greatest);
                addColumn(column, std::min(one, other), std::max(one, other));
            }
        }
        know(m_store.sample(to - 1), column);
        m_nextColumn = column + 1;
    }

    void drawLaneColumn(int column, double least, double greatest)
    {
        const bool isOnSomewhere = least != 0 || greatest != 0;
        const bool isOffSomewhere = least <= 0 && greatest >= 0;
        const int one = isOffSomewhere ? m_lowRow : m_highRow;
        const int other = isOnSomewhere ? m_highRow : m_lowRow;
        addColumn(column, std::min(one, other), std::max(one, other));
        if (isOnSomewhere) {
            addFill(column, column);
        }
    }

    void addColumn(int column, int from, int to)
    {
        if (from == to) {
            addRun(column, column, from);
        } else if (from <= m_bottom && to >= m_top) {
            endRun();
            m_strokes.lines.emplace_back(column, std::max(from, m_top), column,
                                         std::min(to, m_bottom));
        }
    }

    /** Runs in one row are one line: drawing a line costs more than its pixels. */
    void addRun(int from, int to, int row)
    {
        if (m_runFrom <= m_runTo && row == m_runRow && from == m_runTo + 1) {
            m_runTo = to;
            return;
        }
        endRun();
        if (row >= m_top && row <= m_bottom) {
            m_runFrom = from;
            m_runTo = to;
            m_runRow = row;
        }
    }

    void endRun()
    {
        if (m_runFrom <= m_runTo) {
            m_strokes.lines.emplace_back(m_runFrom, m_runRow, m_runTo, m_runRow);
        }
        m_runTo = m_runFrom - 1;
    }

    void addFill(int from, int to)
    {
        // A column in which a gap begins may have been filled up to it.
        if (!m_strokes.fills.empty() && m_strokes.fills.back().right() + 1 >= from) {
            m_strokes.fills.back().setRight(to);
            return;
        }
        const QRect rows(QPoint(from, std::min(m_lowRow, m_highRow)),
                         QPoint(to, std::max(m_lowRow, m_highRow)));
        const QRect visible = rows & m_area.pixels;
        if (!visible.isEmpty()) {
            m_strokes.fills.push_back(visible);
        }
    }

    const TraceStore &m_store;
    const TraceForm &m_form;
    const TraceArea &m_area;
    const int m_left;
    const int m_right;
    const int m_top;
    const int m_bottom;
    const bool m_isLinear;
    const int m_lowRow;
    const int m_highRow;
    TraceStrokes m_strokes;
    int m_nextColumn;       ///< the first where nothing is drawn yet
    bool m_isKnown = false; ///< whether the last entry has a value
    TraceStore::Sample m_last;
    int m_lastColumn = 0;
    bool m_isJoined = false; ///< whether the last value belongs to the column that comes
    int m_runFrom = 0;
    int m_runTo = -1;
    int m_runRow = 0;
};

bool isUsable(const QwtScaleMap &map)
{
    const bool isFinite = std::isfinite(map.s1()) && std::isfinite(map.s2()) &&
                          std::isfinite(map.p1()) && std::isfinite(map.p2());
    return isFinite && map.s1() != map.s2() && map.p1() != map.p2() &&
           std::isfinite(map.s2() - map.s1()) && std::isfinite(map.transform(map.s1())) &&
           std::isfinite(map.transform(map.s2()));
}

} // namespace

bool TraceArea::isValid() const
{
    constexpr int kMost = 1 << 20; // far more than there are on a screen or a page
    return isUsable(x) && isUsable(y) && (x.s2() > x.s1()) == (x.p2() > x.p1()) &&
           !pixels.isEmpty() && pixels.left() > -kMost && pixels.right() < kMost &&
           pixels.top() > -kMost && pixels.bottom() < kMost;
}

TraceStrokes traceStrokes(const TraceStore &store, const TraceForm &form, const TraceArea &area)
{
    if (!area.isValid() || store.isEmpty()) {
        return {};
    }
    return Walk(store, form, area).strokes();
}

} // namespace cnet::view
