#include "panel/views/counters_columns.h"

#include <QStringList>

namespace cnet::panel {

namespace {

struct Column
{
    const char *title;
    int width;
};

// What is looked at first stands first: a narrow terminal cuts the others.
const Column kColumns[] = {
    {"ASKED", 8}, {"TIMEOUT", 8}, {"REFUSED", 8}, {"CHECK", 7}, {"BAD", 7},
    {"MEAN", 7},  {"P50", 7},     {"P95", 7},     {"P99", 7},   {"MAX ms", 8},
    {"MIN", 7},   {"ANSWERS", 8}, {"REPEAT", 7},  {"LATE", 7},  {"REFUSALS", 40},
};

QString codesText(const ExchangeCounters &counters)
{
    QStringList codes;
    for (auto it = counters.refusalsByCode.cbegin(); it != counters.refusalsByCode.cend(); ++it) {
        codes.append(QString::fromLatin1("%1 (%2)")
                         .arg(it.key(), 4, 16, QLatin1Char('0'))
                         .arg(it.value())
                         .toUpper());
    }
    return codes.join(QLatin1String(", "));
}

QString msText(const ResponseHistogram &times, double ms)
{
    return times.count() > 0 ? QString::number(ms, 'f', ms < 100 ? 1 : 0) : QLatin1String("-");
}

} // namespace

QString countText(qint64 count)
{
    const qint64 million = 1000000;
    const qint64 milliard = 1000 * million;
    if (count < million) {
        return QString::number(count);
    }
    // Rounded down, so that it is never more than it was.
    const qint64 tenths = count / ((count < milliard ? million : milliard) / 10);
    return QString::fromLatin1("%1.%2%3")
        .arg(tenths / 10)
        .arg(tenths % 10)
        .arg(QLatin1Char(count < milliard ? 'M' : 'G'));
}

void appendCounterTitles(StyledLine &line)
{
    for (const Column &column : kColumns) {
        line.appendCell(QLatin1String(column.title), column.width, Emphasis::Heading);
    }
}

void appendCounters(StyledLine &line, const ExchangeCounters &counters)
{
    const ResponseHistogram &times = counters.times;
    const QStringList cells{countText(counters.frames),
                            countText(counters.timeouts),
                            countText(counters.refusals),
                            countText(counters.badChecks),
                            countText(counters.bad - counters.badChecks),
                            msText(times, times.meanMs()),
                            msText(times, times.percentileMs(50)),
                            msText(times, times.percentileMs(95)),
                            msText(times, times.percentileMs(99)),
                            msText(times, times.maxMs()),
                            msText(times, times.minMs()),
                            countText(counters.answers),
                            countText(counters.retries),
                            countText(counters.late),
                            codesText(counters)};
    int column = 0;
    for (const QString &cell : cells) {
        line.appendCell(cell, kColumns[column++].width);
    }
}

} // namespace cnet::panel
