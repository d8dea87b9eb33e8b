#include "view/trend/traces/trend_view.h"

#include <algorithm>
#include <cmath>

namespace cnet::view {

namespace {

constexpr double kShortestMs = 10;
constexpr double kLongestMs = 10.0 * 366 * 86400 * 1000;
constexpr double kLatestMs = 4e12; // in the year 2096
constexpr double kFirstLengthMs = 60000;
constexpr double kGreatest = 1e300;

Range drawableTime(const Range &time)
{
    const double length = std::clamp(time.length(), kShortestMs, kLongestMs);
    const double middle = (time.from + time.to) / 2;
    const double from = std::clamp(middle - length / 2, 0.0, kLatestMs - length);
    return {from, from + length};
}

bool isTime(const Range &time)
{
    return std::isfinite(time.from) && std::isfinite(time.to) && time.from <= time.to;
}

} // namespace

bool operator==(const Range &left, const Range &right)
{
    return left.from == right.from && left.to == right.to;
}

bool makeDrawable(Range &range)
{
    if (!std::isfinite(range.from) || !std::isfinite(range.to) || range.from > range.to) {
        return false;
    }
    range.from = std::clamp(range.from, -kGreatest, kGreatest);
    range.to = std::clamp(range.to, -kGreatest, kGreatest);
    const double greatest = std::max(std::fabs(range.from), std::fabs(range.to));
    const double least = std::max(greatest * 1e-9, 1e-30);
    if (range.length() < least) {
        const double middle = range.from / 2 + range.to / 2;
        range = {middle - least / 2, middle + least / 2};
    }
    return true;
}

TrendView::TrendView(qint64 nowMs, QObject *parent)
    : QObject(parent)
{
    const auto now = static_cast<double>(nowMs);
    m_sight.time = drawableTime({now - kFirstLengthMs, now});
    m_sight.panes.resize(1);
}

void TrendView::remember(Gesture gesture)
{
    if (gesture != Gesture::Step && gesture == m_last && !m_steps.empty()) {
        return;
    }
    m_last = gesture;
    m_steps.push_back(m_sight);
    if (m_steps.size() > static_cast<size_t>(kMostSteps)) {
        m_steps.erase(m_steps.begin());
    }
}

void TrendView::back()
{
    if (m_steps.empty()) {
        return;
    }
    const size_t count = m_sight.panes.size();
    m_sight = m_steps.back();
    m_sight.panes.resize(count);
    m_steps.pop_back();
    m_last = Gesture::Step;
    Q_EMIT changed();
}

void TrendView::stop()
{
    m_sight.follow = Follow::No;
}

void TrendView::setTime(const Range &time)
{
    if (!isTime(time)) {
        return;
    }
    stop();
    m_sight.time = drawableTime(time);
    Q_EMIT changed();
}

void TrendView::zoomTime(double factor, double aboutMs)
{
    const Range &time = m_sight.time;
    if (!std::isfinite(factor) || factor <= 0 || !time.holds(aboutMs)) {
        return;
    }
    // Cut before it is shared out, so that what stays stays at the ends, too.
    const double length = std::clamp(time.length() * factor, kShortestMs, kLongestMs);
    const double part = (aboutMs - time.from) / time.length();
    const double from = aboutMs - length * part;
    if (part < 1) {
        stop();
    }
    m_sight.time = drawableTime({from, from + length});
    Q_EMIT changed();
}

void TrendView::panTime(double ms)
{
    const Range &time = m_sight.time;
    setTime({time.from + ms, time.to + ms});
}

void TrendView::setScale(int pane, Side side, const Range &range)
{
    Range drawable = range;
    if (!isPane(pane) || !makeDrawable(drawable)) {
        return;
    }
    m_sight.panes[static_cast<size_t>(pane)].of(side) = {Scaling::Fixed, drawable};
    Q_EMIT changed();
}

void TrendView::setScaling(int pane, Side side, Scaling scaling)
{
    if (!isPane(pane)) {
        return;
    }
    m_sight.panes[static_cast<size_t>(pane)].of(side).scaling = scaling;
    Q_EMIT changed();
}

void TrendView::zoomValues(int pane, double factor)
{
    if (!isPane(pane)) {
        return;
    }
    const PaneScales before = m_sight.panes[static_cast<size_t>(pane)];
    for (const Side side : {Side::Left, Side::Right}) {
        const Range range = before.of(side).range;
        const double middle = (range.from + range.to) / 2;
        const double half = range.length() / 2 * factor;
        setScale(pane, side, {middle - half, middle + half});
    }
}

void TrendView::panValues(int pane, double part)
{
    if (!isPane(pane)) {
        return;
    }
    const PaneScales before = m_sight.panes[static_cast<size_t>(pane)];
    for (const Side side : {Side::Left, Side::Right}) {
        const Range range = before.of(side).range;
        const double by = range.length() * part;
        setScale(pane, side, {range.from + by, range.to + by});
    }
}

void TrendView::noteAutomatic(int pane, Side side, const Range &range)
{
    if (isPane(pane)) {
        Scale &scale = m_sight.panes[static_cast<size_t>(pane)].of(side);
        if (scale.scaling == Scaling::Auto) {
            scale.range = range;
        }
    }
}

void TrendView::follow(qint64 nowMs)
{
    m_sight.follow = Follow::Yes;
    tick(nowMs);
    Q_EMIT changed();
}

void TrendView::stopFollowing()
{
    stop();
    Q_EMIT changed();
}

void TrendView::tick(qint64 nowMs)
{
    if (isFollowing()) {
        const auto now = static_cast<double>(nowMs);
        m_sight.time = drawableTime({now - m_sight.time.length(), now});
    }
}

void TrendView::setPanes(int count)
{
    const auto wanted = static_cast<size_t>(std::clamp(count, 1, kMostPanes));
    if (wanted == m_sight.panes.size()) {
        return;
    }
    m_sight.panes.resize(wanted);
    Q_EMIT panesChanged();
    Q_EMIT changed();
}

void TrendView::removePane(int pane)
{
    if (!isPane(pane) || panes() == 1) {
        return;
    }
    m_sight.panes.erase(m_sight.panes.begin() + pane);
    // Scales of panes as they were numbered before would come back at the wrong ones.
    m_steps.clear();
    Q_EMIT panesChanged();
    Q_EMIT changed();
}

void TrendView::restore(const Sight &sight)
{
    Sight next = m_sight;
    next.follow = sight.follow;
    if (isTime(sight.time)) {
        next.time = drawableTime(sight.time);
    }
    next.panes.clear();
    for (PaneScales scales : sight.panes) {
        for (const Side side : {Side::Left, Side::Right}) {
            if (!makeDrawable(scales.of(side).range)) {
                scales.of(side) = Scale();
            }
        }
        if (next.panes.size() < static_cast<size_t>(kMostPanes)) {
            next.panes.push_back(scales);
        }
    }
    next.panes.resize(std::max<size_t>(next.panes.size(), 1));
    m_sight = next;
    m_steps.clear();
    Q_EMIT panesChanged();
    Q_EMIT changed();
}

} // namespace cnet::view
