#include "gateway/status/health.h"

#include "gateway/toml/time_text.h"

#include <QJsonArray>

namespace cnet::gateway {

namespace {

constexpr qint64 kSecondMs = 1000;
// A disk that is asked for much may take some seconds for a batch.
constexpr qint64 kSilentMs = 15 * kSecondMs;
// A sink that is away for a moment comes back by itself.
constexpr qint64 kAwayMs = 60 * kSecondMs;
constexpr double kLeastHours = 1;

void judgeLine(const LineMeters &line, Health &health)
{
    if (!line.isOpen) {
        health.warnings.append(
            QString::fromLatin1("line %1 is not open: %2").arg(line.name, line.trouble));
        return;
    }
    for (auto it = line.stations.begin(); it != line.stations.end(); ++it) {
        if (it->state == StationState::Away || it->state == StationState::Disturbed) {
            health.warnings.append(QString::fromLatin1("line %1: station %2: %3")
                                       .arg(line.name)
                                       .arg(it.key())
                                       .arg(stateName(it->state)));
        }
    }
}

void judgeSink(const SinkMeters &sink, Health &health)
{
    if (sink.awayMs < kAwayMs) {
        return;
    }
    const QString why =
        sink.state.trouble.isEmpty() ? QLatin1String("it has not begun yet") : sink.state.trouble;
    health.reasons.append(QString::fromLatin1("sink %1 takes nothing since %2 s: %3")
                              .arg(sink.state.name)
                              .arg(sink.awayMs / kSecondMs)
                              .arg(why));
}

QJsonObject stationJson(int number, const StationCounters &station)
{
    return {{QLatin1String("station"), number},
            {QLatin1String("state"), stateName(station.state)},
            {QLatin1String("requests"), station.frames},
            {QLatin1String("answers"), station.answers},
            {QLatin1String("repetitions"), station.retries},
            {QLatin1String("no_answer"), station.timeouts},
            {QLatin1String("unusable"), station.bad},
            {QLatin1String("refused"), station.refusals},
            {QLatin1String("late"), station.late},
            {QLatin1String("response_mean_ms"), station.times.meanMs()},
            {QLatin1String("response_p99_ms"), station.times.percentileMs(99)}};
}

QJsonObject lineJson(const LineMeters &line)
{
    QJsonArray stations;
    for (auto it = line.stations.begin(); it != line.stations.end(); ++it) {
        stations.append(stationJson(it.key(), it.value()));
    }
    QJsonObject json{
        {QLatin1String("line"), line.name},       {QLatin1String("open"), line.isOpen},
        {QLatin1String("trouble"), line.trouble}, {QLatin1String("rounds"), line.rounds},
        {QLatin1String("changes"), line.changes}, {QLatin1String("stations"), stations}};
    if (line.loadPercent) {
        json.insert(QLatin1String("load_percent"), *line.loadPercent);
    }
    return json;
}

QJsonObject sinkJson(const SinkMeters &sink)
{
    return {{QLatin1String("sink"), sink.state.name},
            {QLatin1String("ready"), sink.state.isReady},
            {QLatin1String("trouble"), sink.state.trouble},
            {QLatin1String("values"), sink.state.values},
            {QLatin1String("values_per_second"), sink.valuesPerSecond},
            {QLatin1String("waiting_batches"), sink.state.waitingBatches},
            {QLatin1String("waiting_ms"), sink.state.waitingMs},
            {QLatin1String("dropped_values"), sink.state.droppedValues}};
}

QJsonObject ledgerJson(const Snapshot &snapshot)
{
    const RecorderState &recorder = snapshot.recorder;
    QJsonObject json{{QLatin1String("trouble"), recorder.trouble},
                     {QLatin1String("batches"), recorder.ledger.batches},
                     {QLatin1String("values"), recorder.ledger.values},
                     {QLatin1String("bytes"), recorder.ledger.bytes},
                     {QLatin1String("bytes_limit"), snapshot.bounds.bytes},
                     {QLatin1String("oldest_ms"), recorder.ledger.oldestAgeMs},
                     {QLatin1String("memory_bytes"), recorder.memoryBytes},
                     {QLatin1String("memory_dropped_values"), recorder.memoryDroppedValues}};
    if (const std::optional<double> hours = recorder.ledger.hoursLeft) {
        json.insert(QLatin1String("hours_left"), *hours);
    }
    return json;
}

} // namespace

Health healthOf(const Snapshot &snapshot, qint64 nowMs)
{
    Health health;
    const qint64 ageMs = nowMs - snapshot.atMs;
    if (ageMs > kSilentMs) {
        health.reasons.append(
            QString::fromLatin1("the gateway hangs since %1 s").arg(ageMs / kSecondMs));
    }
    if (!snapshot.recorder.trouble.isEmpty()) {
        health.reasons.append(QLatin1String("ledger: ") + snapshot.recorder.trouble);
    }
    const std::optional<double> hours = snapshot.recorder.ledger.hoursLeft;
    if (hours && *hours < kLeastHours) {
        health.reasons.append(QLatin1String("ledger: room for less than an hour"));
    }
    for (const SinkMeters &sink : snapshot.sinks) {
        judgeSink(sink, health);
    }
    for (const LineMeters &line : snapshot.lines) {
        judgeLine(line, health);
    }
    return health;
}

QJsonObject healthJson(const Health &health)
{
    return {{QLatin1String("status"), QLatin1String(health.isGood() ? "good" : "bad")},
            {QLatin1String("reasons"), QJsonArray::fromStringList(health.reasons)},
            {QLatin1String("warnings"), QJsonArray::fromStringList(health.warnings)}};
}

QJsonObject statusJson(const Snapshot &snapshot, qint64 nowMs)
{
    QJsonArray lines;
    for (const LineMeters &line : snapshot.lines) {
        lines.append(lineJson(line));
    }
    QJsonArray sinks;
    for (const SinkMeters &sink : snapshot.sinks) {
        sinks.append(sinkJson(sink));
    }
    return {{QLatin1String("version"), snapshot.version},
            {QLatin1String("time"), utcText(snapshot.wallMs)},
            {QLatin1String("started"), utcText(snapshot.startedMs)},
            {QLatin1String("age_ms"), nowMs - snapshot.atMs},
            {QLatin1String("health"), healthJson(healthOf(snapshot, nowMs))},
            {QLatin1String("lines"), lines},
            {QLatin1String("sinks"), sinks},
            {QLatin1String("ledger"), ledgerJson(snapshot)}};
}

} // namespace cnet::gateway
