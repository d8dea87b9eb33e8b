#include "view/stations/numbers/trouble_lists.h"

#include "host/wire/frame_words.h"

#include <QCoreApplication>
#include <QLocale>

namespace cnet::view {

namespace {

class TroubleLists
{
    Q_DECLARE_TR_FUNCTIONS(TroubleLists)
};

void addRow(QVector<QStringList> &rows, const QString &what, qint64 count)
{
    if (count > 0) {
        rows.append({what, QLocale().toString(count)});
    }
}

} // namespace

QVector<QStringList> troubleRows(const ExchangeCounters &counters)
{
    QVector<QStringList> rows;
    addRow(rows, TroubleLists::tr("No answer"), counters.timeouts);
    addRow(rows, TroubleLists::tr("Answer with a wrong block check"), counters.badChecks);
    addRow(rows, TroubleLists::tr("Answer that is not usable otherwise"),
           counters.bad - counters.badChecks);
    qint64 told = 0;
    const auto &codes = counters.refusalsByCode;
    for (auto it = codes.cbegin(); it != codes.cend(); ++it) {
        addRow(rows, TroubleLists::tr("Refused: %1").arg(refusalInWords(it.key())), it.value());
        told += it.value();
    }
    addRow(rows, TroubleLists::tr("Refused with other codes"), counters.refusals - told);
    addRow(rows, TroubleLists::tr("Answer after the time-out"), counters.late);
    addRow(rows, TroubleLists::tr("Request sent again"), counters.retries);
    return rows;
}

QVector<QStringList> refusedRows(const BlockBook &blocks, int station)
{
    QVector<QStringList> rows;
    const auto ranges = blocks.sorted();
    for (const AddressRange &range : ranges) {
        const auto it = blocks.all().constFind(range);
        if (range.station != station || it == blocks.all().cend()) {
            continue;
        }
        const auto &codes = it->refusalsByCode;
        for (auto code = codes.cbegin(); code != codes.cend(); ++code) {
            rows.append(
                {range.text(), refusalInWords(code.key()), QLocale().toString(code.value())});
        }
    }
    return rows;
}

} // namespace cnet::view
