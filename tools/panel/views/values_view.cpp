#include "panel/views/counters_columns.h"
#include "panel/views/values_columns.h"
#include "panel/views/view_body.h"

#include "host/address/value_text.h"
#include "host/tag/typed_item.h"
#include "host/tag/value_format.h"
#include "panel/output/typed_output.h"

#include <QTime>

#include <algorithm>

namespace cnet::panel {

namespace {

// Long enough to be seen, short enough that the next change is seen, too.
const qint64 kChangedMs = 1500;
const int kExtreme = 7; // "65535" and two blanks
const int kIndent = 4;
const qint64 kSecondMs = 1000;

// One line of the list.
struct Row
{
    int item = 0;
    int first = 0; ///< value on it
    bool isTrend = false;
};

struct ValuesView
{
    ValuesView(const ViewInput &shown, int columns)
        : input(shown)
        , widths(valueColumns(shown.monitor, shown.state.trend, columns, shown.status.tags))
        , nowMs(shown.status.time.toMSecsSinceEpoch())
        , offsetMs(shown.status.time.offsetFromUtc() * kSecondMs)
    {}

    StyledLine line(const Row &row) const;
    void addCells(StyledLine &line, int item, int first) const;
    void addQuality(StyledLine &line, Quality quality) const;
    void addTrend(StyledLine &line, const Row &row) const;
    StyledLine wordsLine(const Row &row, const ItemState &state) const;
    StyledLine typedLine(const Row &row, const ItemState &state, const Tag &tag) const;
    StyledLine trendLine(const Row &row) const;
    bool isFresh(const ValueHistory::Value &value) const;
    QString changeText(qint64 changedAtMs) const;

    ViewInput input;
    ValueColumns widths;
    qint64 nowMs;    ///< see wallTime()
    qint64 offsetMs; ///< of the local time
};

char markOf(Quality quality)
{
    switch (quality) {
    case Quality::Good:
        return ' ';
    case Quality::Waiting:
        return '>';
    case Quality::Stale:
        return '~';
    case Quality::Implausible:
        return '?';
    case Quality::NeverRead:
        return '-';
    case Quality::Refused:
    case Quality::NoAnswer:
    case Quality::LineDown:
        break;
    }
    return '!';
}

Emphasis emphasisOf(Quality quality)
{
    return quality == Quality::Good || quality == Quality::Waiting ? Emphasis::None : Emphasis::Bad;
}

// What does not fit is cut between words.
QString shortened(const QString &text, int width)
{
    if (text.size() <= width) {
        return text;
    }
    const auto blank = text.left(width).lastIndexOf(QLatin1Char(' '));
    return blank > 0 ? text.left(blank) : text.left(width);
}

QString cellText(const ItemState &state, int offset, bool isDecimalOnly)
{
    const ItemValue &value = state.values.at(offset);
    if (!value.isShown()) {
        return QLatin1String("-");
    }
    const QString text = valueText(value.shown(), state.item.reg.isBit());
    return isDecimalOnly ? text.section(QLatin1Char(' '), 0, 0) : text;
}

// Below a second all ages are alike: what is read in time does not make its line another one.
QString shownAge(qint64 ageMs)
{
    return ageMs >= 0 && ageMs < kSecondMs ? QLatin1String("< 1 s") : ageText(ageMs);
}

QString fiveDigits(double number)
{
    return QString::number(number, 'g', 5);
}

bool ValuesView::isFresh(const ValueHistory::Value &value) const
{
    return value.changedAtMs > 0 && nowMs - value.changedAtMs < kChangedMs;
}

// Asking the system for the local time of each line would cost more than all the rest of it.
QString ValuesView::changeText(qint64 changedAtMs) const
{
    const qint64 dayMs = 24 * 60 * 60 * kSecondMs;
    return changedAtMs == 0
               ? QLatin1String("-")
               : QTime::fromMSecsSinceStartOfDay(static_cast<int>((changedAtMs + offsetMs) % dayMs))
                     .toString(QLatin1String("HH:mm:ss.zzz"));
}

void ValuesView::addCells(StyledLine &line, int item, int first) const
{
    const ItemState &state = input.monitor.items().at(item);
    const int step = valuesOfLine(state.item.reg, widths, input.state.trend);
    const int width = cellWidth(state.item.reg, widths);
    const int end = std::min(first + step, state.item.count);
    int left = std::max(widths.values, width);
    for (int i = first; i < end; ++i) {
        const bool fresh = isFresh(input.history.of(item, i));
        const QString text =
            cellText(state, i, widths.isDecimalOnly) + QLatin1String(fresh ? "*" : "");
        const int shown = std::min(static_cast<int>(text.size()), width);
        line.append(text.left(shown), fresh ? Emphasis::Changed : Emphasis::None);
        line.append(QString(width - shown, QLatin1Char(' ')));
        left -= width;
    }
    line.append(QString(std::max(0, left), QLatin1Char(' ')));
}

void ValuesView::addQuality(StyledLine &line, Quality quality) const
{
    const QString text = quality == Quality::Good ? QString() : qualityText(quality);
    line.appendCell(shortened(text, widths.quality), widths.quality, emphasisOf(quality));
}

void ValuesView::addTrend(StyledLine &line, const Row &row) const
{
    if (widths.extremes > 0) {
        const ValueHistory::Value value = input.history.of(row.item, row.first);
        line.appendCell(value.known ? fiveDigits(value.min) : QLatin1String("-"), kExtreme);
        line.appendCell(value.known ? fiveDigits(value.max) : QLatin1String("-"), kExtreme);
        line.appendCell(sparkline(value.samples, input.glyphs), widths.extremes - 2 * kExtreme);
    }
}

StyledLine ValuesView::wordsLine(const Row &row, const ItemState &state) const
{
    StyledLine line;
    line.appendCell(QString(QLatin1Char(markOf(state.quality))), ValueColumns::kMark,
                    emphasisOf(state.quality));
    line.appendCell(placeText(Tag(), state.item, row.first), widths.address);
    addCells(line, row.item, row.first);
    if (row.first == 0 || input.state.trend == Trend::Shown) {
        addQuality(line, state.quality);
    }
    return line;
}

// Each value on a line of its own: how wide it is nobody knows before.
StyledLine ValuesView::typedLine(const Row &row, const ItemState &state, const Tag &tag) const
{
    const QVector<TagValue> values = readTag(tag, state);
    const TagValue value = values.value(row.first / tag.type.unitsPerValue());
    const bool fresh = isFresh(input.history.of(row.item, row.first));
    StyledLine line;
    line.appendCell(QString(QLatin1Char(markOf(value.quality))), ValueColumns::kMark,
                    emphasisOf(value.quality));
    line.appendCell(shortenedName(placeText(tag, state.item, row.first), widths.address - 2),
                    widths.address);
    const QString text = shownText(tag, value.value) + QLatin1String(fresh ? "*" : "");
    line.appendCell(text.left(widths.values - 1), widths.values,
                    fresh ? Emphasis::Changed : Emphasis::None);
    if (row.first == 0 || input.state.trend == Trend::Shown) {
        addQuality(line, row.first == 0 ? wholeQuality(values, state.quality) : value.quality);
    }
    return line;
}

StyledLine ValuesView::line(const Row &row) const
{
    if (row.isTrend) {
        return trendLine(row);
    }
    const ItemState &state = input.monitor.items().at(row.item);
    const Tag tag = input.status.tags.value(row.item);
    StyledLine line = isPlain(tag) ? wordsLine(row, state) : typedLine(row, state, tag);
    addTrend(line, row);
    if (row.first == 0) {
        line.appendCell(shownAge(state.ageMs(input.status.nowMs)), widths.age);
        line.append(changeText(state.changedAtMs).left(widths.change));
    }
    return line;
}

// Where a value's line has no room for it.
StyledLine ValuesView::trendLine(const Row &row) const
{
    const ValueHistory::Value value = input.history.of(row.item, row.first);
    const QString range = value.known ? QString::fromLatin1("%1..%2").arg(fiveDigits(value.min),
                                                                          fiveDigits(value.max))
                                      : QLatin1String("-");
    return StyledLine(QString(kIndent, QLatin1Char(' ')) + range + QLatin1String("  ") +
                      sparkline(value.samples, input.glyphs));
}

StyledLine titlesOf(const ValueColumns &widths, NamedTags named)
{
    StyledLine titles;
    const auto add = [&](const char *title, int width) {
        titles.appendCell(QLatin1String(title), width, Emphasis::Heading);
    };
    add("", ValueColumns::kMark);
    add(named == NamedTags::Some ? "NAME" : "ADDRESS", widths.address);
    add("VALUE", widths.values);
    add("QUALITY", widths.quality);
    if (widths.extremes > 0) {
        add("MIN", kExtreme);
        add("MAX", kExtreme);
        add("LAST 16 s", widths.extremes - 2 * kExtreme);
    }
    add("AGE", widths.age);
    add("LAST CHANGE", widths.change);
    return titles;
}

QVector<Row> rowsOf(const ValuesView &view)
{
    QVector<Row> rows;
    const ViewInput &input = view.input;
    const bool below = input.state.trend == Trend::Shown && view.widths.extremes == 0;
    for (int item = 0; item < input.monitor.items().size(); ++item) {
        const ItemState &state = input.monitor.items().at(item);
        const Tag tag = input.status.tags.value(item);
        if (!input.state.filter.isEmpty() && !input.state.admits(searchedText(tag, state))) {
            continue;
        }
        const int step = isPlain(tag) ? valuesOfLine(state.item.reg, view.widths, input.state.trend)
                                      : tag.type.unitsPerValue();
        for (int first = 0; first < state.item.count; first += step) {
            rows.append({item, first, false});
            if (below) {
                rows.append({item, first, true});
            }
        }
    }
    return rows;
}

struct StationColumn
{
    const char *title;
    int width;
};

const StationColumn kStationColumns[] = {
    {"STATION", 9}, {"STATE", 10},  {"FRAMES", 8},  {"ANSWERS", 8}, {"RETRIES", 8},
    {"BAD", 7},     {"TIMEOUT", 8}, {"REFUSED", 8}, {"MEAN ms", 8}, {"WORST", 6},
};

StyledLine stationRow(const QStringList &cells, Emphasis emphasis)
{
    StyledLine row;
    int column = 0;
    for (const QString &cell : cells) {
        row.appendCell(cell, kStationColumns[column++].width, emphasis);
    }
    return row;
}

// While the line is down nobody knows how a station is.
QVector<StyledLine> stationLines(const MonitorStatus &status, int most)
{
    QStringList titles;
    for (const StationColumn &column : kStationColumns) {
        titles.append(QLatin1String(column.title));
    }
    QVector<StyledLine> lines{stationRow(titles, Emphasis::Heading)};
    for (auto it = status.stations.cbegin(); it != status.stations.cend(); ++it) {
        if (lines.size() > most) {
            lines.append(StyledLine(QLatin1String("... and more, see the view of stations")));
            break;
        }
        const StationCounters &counters = it.value();
        const bool up = status.linkLost.isEmpty();
        const bool good =
            counters.state == StationState::Answers || counters.state == StationState::Unknown;
        lines.append(stationRow(
            {QString::number(it.key()), up ? stateName(counters.state) : QLatin1String("line down"),
             countText(counters.frames), countText(counters.answers), countText(counters.retries),
             countText(counters.bad), countText(counters.timeouts), countText(counters.refusals),
             QString::number(counters.times.meanMs(), 'f', 1),
             QString::number(counters.times.maxMs(), 'f', 1)},
            up && good ? Emphasis::None : Emphasis::Bad));
    }
    return lines;
}

} // namespace

QString ageText(qint64 ageMs)
{
    const qint64 minute = 60 * kSecondMs;
    if (ageMs < 0) {
        return QLatin1String("-");
    }
    if (ageMs < kSecondMs) {
        return QString::fromLatin1("%1 ms").arg(ageMs);
    }
    if (ageMs < 2 * minute) {
        return QString::fromLatin1("%1 s").arg(static_cast<double>(ageMs) / kSecondMs, 0, 'f', 1);
    }
    return QString::fromLatin1("%1 min").arg(ageMs / minute);
}

ViewBody valuesView(const ViewInput &input, int columns, int rows)
{
    const int shareOfStations = 3;
    const ValuesView view(input, columns);
    const QVector<Row> lines = rowsOf(view);
    ViewBody body;
    body.titles = {titlesOf(view.widths, namedTags(input.status.tags))};
    body.rows = static_cast<int>(lines.size());
    body.row = [view, lines](int row) { return view.line(lines.at(row)); };
    body.bottom = stationLines(input.status, std::max(2, rows / shareOfStations));
    return body;
}

} // namespace cnet::panel
