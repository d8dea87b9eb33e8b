#include "view/trend/output/trace_csv.h"

#include "view/trend/output/row_time.h"

#include "host/text/csv_field.h"
#include "host/text/number_text.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace cnet::view {

namespace {

struct Part
{
    int trace = 0;
    int from = 0; ///< entry; the one that holds when the time begins
    int to = 0;
};

struct TraceCsv
{
    Q_DECLARE_TR_FUNCTIONS(TraceCsv)
};

} // namespace

std::optional<QByteArray> traceCsv(const TraceSet &traces, const Range &time, QString &error)
{
    const qint64 fromMs = std::llround(std::ceil(time.from));
    const qint64 toMs = std::llround(std::floor(time.to));
    std::vector<Part> parts;
    qint64 rows = 0;
    for (int i = 0; i < traces.count(); ++i) {
        const TraceStore &store = *traces.at(i).store;
        const Part part{i, std::max(store.indexAt(fromMs + 1) - 1, 0), store.indexAt(toMs + 1)};
        if (traces.at(i).choice.isVisible && part.to > part.from) {
            parts.push_back(part);
            rows += part.to - part.from;
        }
    }
    if (rows == 0) {
        error = TraceCsv::tr("There are no samples in this time.");
        return std::nullopt;
    }
    if (rows > kMostCsvRows) {
        error = TraceCsv::tr("These are more than a million rows.");
        return std::nullopt;
    }
    RowTime times;
    QByteArray text("time,name,value\n");
    for (const Part &part : parts) {
        const Trace &trace = traces.at(part.trace);
        const QByteArray name = csvField(trace.choice.name, CsvDialect());
        for (int i = part.from; i < part.to; ++i) {
            const auto sample = trace.store->sample(i);
            text += times.text(std::max(sample.atMs, fromMs)) + ',' + name + ',';
            text += sample.isGap ? QByteArray() : numberText(sample.value).toLatin1();
            text += '\n';
        }
    }
    return text;
}

} // namespace cnet::view
