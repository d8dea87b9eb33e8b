#include "panel/terminal/screen_text.h"

#include "host/address/value_text.h"

#include <algorithm>

namespace cnet::panel {

namespace {

const int kWordCell = 14; // "65535 0xFFFF" and two blanks
const int kBitCell = 2;
const int kMarkWidth = 2; // what cannot be cut away: is the value good
const int kQualityWidth = 21;
const int kTimeWidth = 14; // "12:34:56.789" and two blanks
const int kAgeWidth = 8;
const int kBitsOfLine = 16;

// The columns that the terminal has room for; the mark is always shown.
struct Columns
{
    int address = 0;
    int values = 0;
    bool quality = false;
    bool change = false;
    bool age = false;
};

int cellWidth(const RegisterInfo &reg)
{
    return reg.isBit() ? kBitCell : kWordCell;
}

// How many values of an item stand on one line.
int valuesOfLine(const RegisterInfo &reg, int width)
{
    const int fitting = std::max(1, width / cellWidth(reg));
    return reg.isBit() ? std::min(fitting, kBitsOfLine) : std::min(fitting, 4);
}

QString placeText(const Item &item, int offset)
{
    return QString::fromLatin1("%1/%2:%3")
        .arg(item.station)
        .arg(item.reg.name, item.addressText(offset));
}

// The quality is dropped last, and its mark never.
Columns columnsFor(const Monitor &monitor, int columns)
{
    Columns widths;
    for (const ItemState &state : monitor.items()) {
        const int last = state.item.count - 1;
        const int length = static_cast<int>(placeText(state.item, last).size());
        widths.address = std::max(widths.address, length + 2);
    }
    widths.address = std::max(widths.address, 10);
    int left = columns - kMarkWidth - widths.address - kWordCell;
    const auto take = [&left](int width) {
        const bool fits = left >= width;
        left -= fits ? width : 0;
        return fits;
    };
    widths.quality = take(kQualityWidth);
    widths.age = take(kAgeWidth);
    widths.change = take(kTimeWidth);
    widths.values = std::min(4 * kWordCell, kWordCell + std::max(0, left));
    return widths;
}

QString padded(const QString &text, int width)
{
    return text.leftJustified(width, QLatin1Char(' '));
}

char markOf(Quality quality)
{
    switch (quality) {
    case Quality::Good:
        return ' ';
    case Quality::Waiting:
        return '>';
    case Quality::Stale:
        return '~';
    case Quality::NeverRead:
        return '-';
    case Quality::Refused:
    case Quality::NoAnswer:
    case Quality::LineDown:
        break;
    }
    return '!';
}

QString cellText(const ItemState &state, int offset)
{
    const ItemValue &value = state.values.at(offset);
    return value.isShown() ? valueText(value.shown(), state.item.reg.isBit()) : QLatin1String("-");
}

QString itemDetails(const ItemState &state, const Columns &widths, qint64 nowMs)
{
    QString text;
    if (widths.quality) {
        text += padded(state.quality == Quality::Good ? QString() : qualityText(state.quality),
                       kQualityWidth);
    }
    if (widths.age) {
        text += padded(ageText(state.ageMs(nowMs)), kAgeWidth);
    }
    if (widths.change) {
        const QDateTime changed = wallTime(state.changedAtMs);
        text +=
            changed.isNull() ? QLatin1String("-") : changed.toString(QLatin1String("HH:mm:ss.zzz"));
    }
    return text;
}

QStringList itemLines(const ItemState &state, const Columns &widths, qint64 nowMs)
{
    QStringList lines;
    const Item &item = state.item;
    const int step = valuesOfLine(item.reg, widths.values);
    const QString mark = padded(QString(QLatin1Char(markOf(state.quality))), kMarkWidth);
    for (int first = 0; first < item.count; first += step) {
        QString values;
        for (int i = first; i < std::min(first + step, item.count); ++i) {
            values += padded(cellText(state, i), cellWidth(item.reg));
        }
        QString line =
            mark + padded(placeText(item, first), widths.address) + padded(values, widths.values);
        lines.append(first == 0 ? line + itemDetails(state, widths, nowMs) : line);
    }
    return lines;
}

struct StationColumn
{
    const char *title;
    int width;
};

const StationColumn kStationColumns[] = {
    {"STATION", 9}, {"STATE", 10},  {"FRAMES", 8},  {"ANSWERS", 8}, {"RETRIES", 8},
    {"BAD", 5},     {"TIMEOUT", 8}, {"REFUSED", 8}, {"MEAN ms", 8}, {"WORST", 6},
};

QString stationRow(const QStringList &cells)
{
    QString row;
    int column = 0;
    for (const QString &cell : cells) {
        row += padded(cell, kStationColumns[column++].width);
    }
    return row;
}

// While the line is down the state of a station is not known.
QStringList stationLines(const MonitorStatus &status)
{
    QStringList titles;
    for (const StationColumn &column : kStationColumns) {
        titles.append(QLatin1String(column.title));
    }
    QStringList lines{stationRow(titles)};
    for (auto it = status.stations.cbegin(); it != status.stations.cend(); ++it) {
        const StationCounters &counters = it.value();
        const QString state =
            status.linkLost.isEmpty() ? stateName(counters.state) : QLatin1String("line down");
        lines.append(stationRow(
            {QString::number(it.key()), state, QString::number(counters.frames),
             QString::number(counters.answers), QString::number(counters.retries),
             QString::number(counters.bad), QString::number(counters.timeouts),
             QString::number(counters.refusals), QString::number(counters.times.meanMs(), 'f', 1),
             QString::number(counters.times.maxMs(), 'f', 1)}));
    }
    return lines;
}

QString heading(const MonitorStatus &status)
{
    const QString state = status.linkLost.isEmpty()
                              ? QString()
                              : QString::fromLatin1("  LINK DOWN: %1").arg(status.linkLost);
    return QString::fromLatin1("%1  %2  round %3%4")
        .arg(status.time.toString(QLatin1String("HH:mm:ss")), status.link,
             QString::number(status.rounds), state);
}

} // namespace

QString ageText(qint64 ageMs)
{
    const qint64 second = 1000;
    const qint64 minute = 60 * second;
    if (ageMs < 0) {
        return QLatin1String("-");
    }
    if (ageMs < second) {
        return QString::fromLatin1("%1 ms").arg(ageMs);
    }
    if (ageMs < 2 * minute) {
        return QString::fromLatin1("%1 s").arg(static_cast<double>(ageMs) / second, 0, 'f', 1);
    }
    return QString::fromLatin1("%1 min").arg(ageMs / minute);
}

QStringList screenText(const Monitor &monitor, const MonitorStatus &status, int columns, int rows,
                       int &scrolled)
{
    const Columns widths = columnsFor(monitor, columns);
    QString titles = padded(QString(), kMarkWidth) +
                     padded(QLatin1String("ADDRESS"), widths.address) +
                     padded(QLatin1String("VALUE"), widths.values);
    titles += widths.quality ? padded(QLatin1String("QUALITY"), kQualityWidth) : QString();
    titles += widths.age ? padded(QLatin1String("AGE"), kAgeWidth) : QString();
    titles += widths.change ? QLatin1String("LAST CHANGE") : QString();
    const QStringList top{heading(status), titles};
    QStringList body;
    for (const ItemState &state : monitor.items()) {
        body += itemLines(state, widths, status.nowMs);
    }
    const QStringList bottom = stationLines(status);
    const int room =
        std::max(1, rows - static_cast<int>(top.size()) - static_cast<int>(bottom.size()));
    const int all = static_cast<int>(body.size());
    scrolled = std::clamp(scrolled, 0, std::max(0, all - (room - 1)));
    if (all > room) {
        body = body.mid(scrolled, room - 1);
        body.append(QString::fromLatin1("... lines %1 to %2 of %3")
                        .arg(scrolled + 1)
                        .arg(scrolled + body.size())
                        .arg(all));
    } else {
        scrolled = 0;
    }
    QStringList lines = top + body + bottom;
    for (QString &line : lines) {
        line.truncate(columns);
    }
    return lines;
}

} // namespace cnet::panel
