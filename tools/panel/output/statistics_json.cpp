#include "panel/output/statistics_json.h"

#include "panel/output/monitor_output.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <initializer_list>
#include <utility>

namespace cnet::panel {

namespace {

const int kVersion = 1;

// A microsecond is as fine as times are counted.
double thousandths(double number)
{
    return std::round(number * 1000) / 1000;
}

void put(QJsonObject &object, std::initializer_list<std::pair<const char *, QJsonValue>> members)
{
    for (const auto &member : members) {
        object.insert(QLatin1String(member.first), member.second);
    }
}

QJsonObject timesJson(const ResponseHistogram &times)
{
    // 0 is a time, so where there was no answer there is none.
    const auto ms = [&](double value) {
        return times.count() > 0 ? QJsonValue(thousandths(value)) : QJsonValue();
    };
    QJsonArray histogram;
    for (const ResponseHistogram::Bucket &bucket : times.buckets()) {
        QJsonObject object;
        put(object, {{"from", thousandths(bucket.fromMs)},
                     {"to", thousandths(bucket.toMs)},
                     {"count", bucket.count}});
        histogram.append(object);
    }
    QJsonObject object;
    put(object, {{"count", times.count()},
                 {"min", ms(times.minMs())},
                 {"mean", ms(times.meanMs())},
                 {"p50", ms(times.percentileMs(50))},
                 {"p95", ms(times.percentileMs(95))},
                 {"p99", ms(times.percentileMs(99))},
                 {"max", ms(times.maxMs())},
                 {"histogram", histogram}});
    return object;
}

void putCounters(QJsonObject &object, const ExchangeCounters &counters)
{
    QJsonObject codes;
    for (auto it = counters.refusalsByCode.cbegin(); it != counters.refusalsByCode.cend(); ++it) {
        codes.insert(QString::fromLatin1("%1").arg(it.key(), 4, 16, QLatin1Char('0')).toUpper(),
                     it.value());
    }
    put(object, {{"requests", counters.frames},
                 {"fences", counters.fences},
                 {"answers", counters.answers},
                 {"refusals", counters.refusals},
                 {"refusals_by_code", codes},
                 {"bad_checks", counters.badChecks},
                 {"other_bad", counters.bad - counters.badChecks},
                 {"timeouts", counters.timeouts},
                 {"repetitions", counters.retries},
                 {"late", counters.late},
                 {"sent_bytes", counters.sentBytes},
                 {"received_bytes", counters.receivedBytes},
                 {"response_ms", timesJson(counters.times)}});
}

QJsonObject trafficJson(const Statistics &statistics, const LineTraffic &traffic)
{
    const std::optional<double> load = statistics.loadPercent(traffic);
    QJsonObject object;
    put(object, {{"seconds", thousandths(traffic.seconds)},
                 {"sent_bytes", traffic.sentBytes},
                 {"received_bytes", traffic.receivedBytes},
                 {"bytes_per_second", thousandths(traffic.bytesPerSecond())},
                 {"load_percent", load ? QJsonValue(thousandths(*load)) : QJsonValue()}});
    return object;
}

QJsonObject lineJson(const Statistics &statistics, qint64 nowMs)
{
    const bool began = statistics.sinceMs() >= 0;
    const LineMeter &line = statistics.line();
    QJsonObject object = trafficJson(statistics, began ? line.all(nowMs) : LineTraffic());
    put(object,
        {{"settings",
          statistics.lineSettings() ? QJsonValue(statistics.lineSettings()->text()) : QJsonValue()},
         {"recent", trafficJson(statistics, began ? line.recent(nowMs) : LineTraffic())}});
    return object;
}

QJsonArray stationsJson(const Statistics &statistics)
{
    QJsonArray stations;
    const QMap<int, StationCounters> &all = statistics.stations();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        QJsonObject object;
        put(object, {{"station", it.key()}, {"state", stateName(it.value().state)}});
        putCounters(object, it.value());
        stations.append(object);
    }
    return stations;
}

QJsonArray blocksJson(const BlockBook &blocks)
{
    QJsonArray array;
    for (const AddressRange &range : blocks.sorted()) {
        QJsonObject object;
        put(object, {{"station", range.station},
                     {"register", range.registerName},
                     {"start", range.start},
                     {"count", range.count}});
        putCounters(object, blocks.all().value(range));
        array.append(object);
    }
    return array;
}

} // namespace

QByteArray statisticsJson(const Statistics &statistics, const StatisticsMoment &moment)
{
    QJsonObject others;
    putCounters(others, statistics.blocks().others());
    QJsonObject object;
    put(object, {{"format", QLatin1String("cnet-statistics")},
                 {"version", kVersion},
                 {"time", zonedTime(moment.time)},
                 {"link", moment.link},
                 {"line", lineJson(statistics, moment.nowMs)},
                 {"stations", stationsJson(statistics)},
                 {"blocks", blocksJson(statistics.blocks())},
                 {"other_blocks", others}});
    return QJsonDocument(object).toJson();
}

} // namespace cnet::panel
