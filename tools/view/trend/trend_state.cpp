#include "view/trend/trend_state.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>

namespace cnet::view {

namespace {

const QLatin1String kTraces("traces");
const QLatin1String kMarkers("notes");
const QLatin1String kPanes("panes");
const QLatin1String kName("name");
const QLatin1String kColour("colour");
const QLatin1String kPane("pane");
const QLatin1String kSide("side");
const QLatin1String kLeft("left");
const QLatin1String kRight("right");
const QLatin1String kVisible("visible");
const QLatin1String kAt("atMs");
const QLatin1String kNote("note");
const QLatin1String kFrom("from");
const QLatin1String kTo("to");
const QLatin1String kFollowing("following");
const QLatin1String kSeconds("seconds");
const QLatin1String kAuto("automatic");
const QLatin1String kHeights("heights");
const QLatin1String kCursors("cursors");
const std::array<QLatin1String, 2> kCursorNames{QLatin1String("a"), QLatin1String("b")};

constexpr double kMsPerSecond = 1000;
constexpr double kLongestSeconds = 1e9;
constexpr double kLatestMs = 1e14;
constexpr int kLongestName = 300;

QJsonObject traceJson(const TraceChoice &trace)
{
    return {{kName, trace.name},
            {kColour, trace.colour},
            {kPane, trace.pane},
            {kSide, trace.side == Side::Left ? kLeft : kRight},
            {kVisible, trace.isVisible}};
}

QJsonValue scaleJson(const Scale &scale)
{
    if (scale.scaling == Scaling::Auto) {
        return kAuto;
    }
    return QJsonObject{{kFrom, scale.range.from}, {kTo, scale.range.to}};
}

Scale scaleOf(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    Range range{object.value(kFrom).toDouble(), object.value(kTo).toDouble()};
    const bool isFixed =
        object.value(kFrom).isDouble() && object.value(kTo).isDouble() && makeDrawable(range);
    return isFixed ? Scale{Scaling::Fixed, range} : Scale();
}

std::vector<TraceChoice> tracesOf(const QJsonArray &array)
{
    std::vector<TraceChoice> traces;
    for (const QJsonValue &value : array) {
        const QJsonObject object = value.toObject();
        TraceChoice trace;
        trace.name = object.value(kName).toString();
        trace.colour = std::max(object.value(kColour).toInt(), 0);
        trace.pane = object.value(kPane).toInt();
        trace.side = object.value(kSide) == kRight ? Side::Right : Side::Left;
        trace.isVisible = object.value(kVisible).toBool(true);
        if (!trace.name.isEmpty() && trace.name.size() <= kLongestName) {
            traces.push_back(trace);
        }
    }
    return traces;
}

bool isTime(const QJsonValue &value)
{
    return value.toDouble(-1) >= 0 && value.toDouble() <= kLatestMs;
}

std::vector<Marker> markersOf(const QJsonArray &array)
{
    std::vector<Marker> markers;
    for (const QJsonValue &value : array) {
        const QJsonObject object = value.toObject();
        if (isTime(object.value(kAt))) {
            const double atMs = object.value(kAt).toDouble();
            markers.push_back({std::llround(atMs), object.value(kNote).toString()});
        }
    }
    return markers;
}

/** Nothing where any of them is no part. */
std::vector<double> partsOf(const QJsonArray &array)
{
    std::vector<double> parts;
    for (const QJsonValue &value : array) {
        const double part = value.toDouble(-1);
        if (part < 0 || part > 1) {
            return {};
        }
        parts.push_back(part);
    }
    return parts;
}

} // namespace

QJsonObject trendJson(const TrendState &state)
{
    QJsonArray traces;
    for (const TraceChoice &trace : state.traces) {
        traces.append(traceJson(trace));
    }
    QJsonArray markers;
    for (const Marker &marker : state.markers) {
        markers.append(QJsonObject{{kAt, static_cast<double>(marker.atMs)}, {kNote, marker.note}});
    }
    QJsonArray panes;
    for (const PaneScales &scales : state.sight.panes) {
        panes.append(
            QJsonObject{{kLeft, scaleJson(scales.left)}, {kRight, scaleJson(scales.right)}});
    }
    QJsonArray heights;
    for (const double part : state.parts) {
        heights.append(part);
    }
    QJsonObject cursors;
    for (size_t i = 0; i < kCursorNames.size(); ++i) {
        if (state.cursors[i]) {
            cursors.insert(kCursorNames[i], *state.cursors[i]);
        }
    }
    return {{kTraces, traces},
            {kMarkers, markers},
            {kPanes, panes},
            {kHeights, heights},
            {kCursors, cursors},
            {kFollowing, state.sight.follow == Follow::Yes},
            {kSeconds, state.sight.time.length() / kMsPerSecond}};
}

TrendState trendState(const QJsonObject &object)
{
    TrendState state;
    state.traces = tracesOf(object.value(kTraces).toArray());
    state.markers = markersOf(object.value(kMarkers).toArray());
    const QJsonArray panes = object.value(kPanes).toArray();
    for (const QJsonValue &pane : panes) {
        const QJsonObject scales = pane.toObject();
        state.sight.panes.push_back({scaleOf(scales.value(kLeft)), scaleOf(scales.value(kRight))});
    }
    state.parts = partsOf(object.value(kHeights).toArray());
    const QJsonObject cursors = object.value(kCursors).toObject();
    for (size_t i = 0; i < kCursorNames.size(); ++i) {
        const QJsonValue atMs = cursors.value(kCursorNames[i]);
        if (isTime(atMs)) {
            state.cursors[i] = atMs.toDouble();
        }
    }
    state.sight.follow = object.value(kFollowing).toBool(true) ? Follow::Yes : Follow::No;
    const double seconds = object.value(kSeconds).toDouble(60);
    state.sight.time = {0, std::clamp(seconds, 0.0, kLongestSeconds) * kMsPerSecond};
    return state;
}

} // namespace cnet::view
