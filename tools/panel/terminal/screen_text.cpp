#include "panel/terminal/screen_text.h"

#include <algorithm>

namespace cnet::panel {

namespace {

const int kWordCell = 14; // "65535 0xFFFF" and two blanks
const int kBitCell = 2;
const int kTimeWidth = 14; // "12:34:56.789" and two blanks
const int kAgeWidth = 8;
const int kBitsOfLine = 16;

struct Columns
{
    int address = 0;
    int values = 0;
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

Columns columnsFor(const Monitor &monitor, int columns)
{
    Columns widths;
    for (const WatchedItem &watched : monitor.items()) {
        const int last = watched.item.count - 1;
        const int length = static_cast<int>(placeText(watched.item, last).size());
        widths.address = std::max(widths.address, length + 2);
    }
    widths.address = std::max(widths.address, 10);
    const int left = columns - widths.address - kTimeWidth - kAgeWidth;
    widths.values = std::max(kWordCell, std::min(left, 4 * kWordCell));
    return widths;
}

QString padded(const QString &text, int width)
{
    return text.leftJustified(width, QLatin1Char(' '));
}

QStringList itemLines(const WatchedItem &watched, const Columns &widths, qint64 nowMs)
{
    QStringList lines;
    const Item &item = watched.item;
    const int step = valuesOfLine(item.reg, widths.values);
    for (int first = 0; first < item.count; first += step) {
        QString values;
        for (int i = first; i < std::min(first + step, item.count); ++i) {
            const QString text = watched.known.at(i) ? valueText(item.reg, watched.values.at(i))
                                                     : QLatin1String("-");
            values += padded(text, cellWidth(item.reg));
        }
        QString line =
            padded(placeText(item, first), widths.address) + padded(values, widths.values);
        if (first == 0) {
            line += padded(watched.lastChange.isNull()
                               ? QLatin1String("-")
                               : watched.lastChange.toString(QLatin1String("HH:mm:ss.zzz")),
                           kTimeWidth);
            line += ageText(watched.ageMs(nowMs));
            line += watched.failed() ? QLatin1String(" !") : QLatin1String();
        }
        lines.append(line);
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

QStringList stationLines(const QMap<int, StationCounters> &stations)
{
    QStringList titles;
    for (const StationColumn &column : kStationColumns) {
        titles.append(QLatin1String(column.title));
    }
    QStringList lines{stationRow(titles)};
    for (auto it = stations.cbegin(); it != stations.cend(); ++it) {
        const StationCounters &counters = it.value();
        lines.append(stationRow(
            {QString::number(it.key()), stateName(counters.state), QString::number(counters.frames),
             QString::number(counters.answers), QString::number(counters.retries),
             QString::number(counters.bad), QString::number(counters.timeouts),
             QString::number(counters.refusals), QString::number(counters.meanMs, 'f', 1),
             QString::number(counters.worstMs, 'f', 1)}));
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

QStringList screenText(const Monitor &monitor, const MonitorStatus &status, int columns, int rows)
{
    const Columns widths = columnsFor(monitor, columns);
    QStringList top{heading(status), padded(QLatin1String("ADDRESS"), widths.address) +
                                         padded(QLatin1String("VALUE"), widths.values) +
                                         padded(QLatin1String("LAST CHANGE"), kTimeWidth) +
                                         QLatin1String("AGE")};
    QStringList body;
    for (const WatchedItem &watched : monitor.items()) {
        body += itemLines(watched, widths, status.nowMs);
    }
    const QStringList bottom = stationLines(status.stations);
    const int room =
        std::max(1, rows - static_cast<int>(top.size()) - static_cast<int>(bottom.size()));
    if (body.size() > room) {
        const int hidden = static_cast<int>(body.size()) - room + 1;
        body = body.mid(0, room - 1);
        body.append(QString::fromLatin1("... %1 more lines").arg(hidden));
    }
    QStringList lines = top + body + bottom;
    for (QString &line : lines) {
        line.truncate(columns);
    }
    return lines;
}

} // namespace cnet::panel
