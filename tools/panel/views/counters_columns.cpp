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
    {"ASKED", 9}, {"ANSWERS", 9}, {"TIMEOUT", 8}, {"REFUSED", 8}, {"BADCHECK", 9},
    {"BAD", 6},   {"REPEAT", 7},  {"LATE", 6},    {"MIN ms", 8},  {"MEAN", 8},
    {"P50", 8},   {"P95", 8},     {"P99", 8},     {"MAX", 9},     {"REFUSALS", 40},
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

void appendCounterTitles(StyledLine &line)
{
    for (const Column &column : kColumns) {
        line.appendCell(QLatin1String(column.title), column.width, Emphasis::Heading);
    }
}

void appendCounters(StyledLine &line, const ExchangeCounters &counters)
{
    const ResponseHistogram &times = counters.times;
    const QStringList cells{QString::number(counters.frames),
                            QString::number(counters.answers),
                            QString::number(counters.timeouts),
                            QString::number(counters.refusals),
                            QString::number(counters.badChecks),
                            QString::number(counters.bad - counters.badChecks),
                            QString::number(counters.retries),
                            QString::number(counters.late),
                            msText(times, times.minMs()),
                            msText(times, times.meanMs()),
                            msText(times, times.percentileMs(50)),
                            msText(times, times.percentileMs(95)),
                            msText(times, times.percentileMs(99)),
                            msText(times, times.maxMs()),
                            codesText(counters)};
    int column = 0;
    for (const QString &cell : cells) {
        line.appendCell(cell, kColumns[column++].width);
    }
}

} // namespace cnet::panel
