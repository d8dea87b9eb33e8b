#include "gateway/status/metrics.h"

#include "gateway/status/prometheus_text.h"

#include <array>
#include <limits>

namespace cnet::gateway {

namespace {

constexpr double kMs = 1e-3; // in seconds
constexpr double kSecondsOfHour = 3600;
// Twice as long each; the host's buckets end at these times, so that no answer is counted wrong.
constexpr double kFirstBucketMs = 4.096;
constexpr int kBuckets = 11; // up to 4.2 s

class Writer
{
public:
    Writer(const Snapshot &snapshot, const ProcessUsage &usage, qint64 nowMs)
        : m_snapshot(snapshot)
        , m_usage(usage)
        , m_nowMs(nowMs)
    {}

    QByteArray write()
    {
        writeProgram();
        writeLines();
        writeStations();
        writeErrors();
        writeTimes();
        writeLedger();
        writeSinks();
        return m_text.text();
    }

private:
    void one(const char *name, const char *type, const char *help, double value)
    {
        m_text.begin(name, type, help);
        m_text.add({}, value);
    }

    template <typename Value>
    void perLine(const char *name, const char *type, const char *help, Value value)
    {
        m_text.begin(name, type, help);
        for (const LineMeters &line : m_snapshot.lines) {
            m_text.add({{"line", line.name}}, static_cast<double>(value(line)));
        }
    }

    template <typename Use>
    void eachStation(Use use)
    {
        for (const LineMeters &line : m_snapshot.lines) {
            for (auto it = line.stations.begin(); it != line.stations.end(); ++it) {
                use(line.name, QString::number(it.key()), it.value());
            }
        }
    }

    template <typename Value>
    void perStation(const char *name, const char *type, const char *help, Value value)
    {
        m_text.begin(name, type, help);
        eachStation(
            [&](const QString &line, const QString &station, const StationCounters &counters) {
                m_text.add({{"line", line}, {"station", station}},
                           static_cast<double>(value(counters)));
            });
    }

    template <typename Value>
    void perSink(const char *name, const char *type, const char *help, Value value)
    {
        m_text.begin(name, type, help);
        for (const SinkMeters &sink : m_snapshot.sinks) {
            m_text.add({{"sink", sink.state.name}}, static_cast<double>(value(sink)));
        }
    }

    void writeProgram();
    void writeLines();
    void writeStations();
    void writeErrors();
    void writeTimes();
    void writeTimesOf(const QString &line, const QString &station, const ResponseHistogram &times);
    void writeLedger();
    void writeLedgerRoom();
    void writeSinks();

    const Snapshot &m_snapshot;
    const ProcessUsage &m_usage;
    qint64 m_nowMs;
    PrometheusText m_text;
};

void Writer::writeProgram()
{
    m_text.begin("cnet_gateway_build_info", "gauge", "Version of cnet-gateway and of Qt.");
    m_text.add({{"version", m_snapshot.version}, {"qt", QLatin1String(qVersion())}}, 1);
    one("cnet_gateway_snapshot_age_seconds", "gauge",
        "Age of these numbers. More than some seconds: the gateway hangs.",
        static_cast<double>(m_nowMs - m_snapshot.atMs) * kMs);
    one("process_start_time_seconds", "gauge", "When the process began, since 1970 in UTC.",
        static_cast<double>(m_snapshot.startedMs) * kMs);
    one("process_cpu_seconds_total", "counter", "Time of the processor that was used.",
        m_usage.cpuSeconds);
    one("process_resident_memory_bytes", "gauge", "Memory in use.",
        static_cast<double>(m_usage.residentBytes));
    one("process_virtual_memory_bytes", "gauge", "Addresses in use.",
        static_cast<double>(m_usage.virtualBytes));
    one("process_open_fds", "gauge", "Open files and connections.", m_usage.openFiles);
}

void Writer::writeLines()
{
    perLine("cnet_gateway_line_up", "gauge", "1: the line is open.",
            [](const LineMeters &line) { return line.isOpen ? 1 : 0; });
    perLine("cnet_gateway_line_rounds_total", "counter", "Rounds in which all tags were read.",
            [](const LineMeters &line) { return line.rounds; });
    perLine("cnet_gateway_line_changes_total", "counter",
            "Changes of values and qualities that went to the ledger.",
            [](const LineMeters &line) { return line.changes; });
    perLine("cnet_gateway_line_sent_bytes_total", "counter", "Bytes sent to the line.",
            [](const LineMeters &line) { return line.traffic.sentBytes; });
    perLine("cnet_gateway_line_received_bytes_total", "counter", "Bytes received from the line.",
            [](const LineMeters &line) { return line.traffic.receivedBytes; });
    m_text.begin("cnet_gateway_line_load_ratio", "gauge",
                 "Share of the last ten seconds in which the line was busy, where its speed is "
                 "known.");
    for (const LineMeters &line : m_snapshot.lines) {
        if (line.loadPercent) {
            m_text.add({{"line", line.name}}, *line.loadPercent / 100);
        }
    }
}

void Writer::writeStations()
{
    perStation("cnet_gateway_station_up", "gauge",
               "1: the station answers, also with a refusal, or has not been given up.",
               [](const StationCounters &station) {
                   const bool isAway = station.state == StationState::Away ||
                                       station.state == StationState::Disturbed;
                   return isAway ? 0 : 1;
               });
    perStation("cnet_gateway_station_requests_total", "counter",
               "Requests sent, each repetition counted.",
               [](const StationCounters &station) { return station.frames; });
    perStation("cnet_gateway_station_answers_total", "counter", "Good answers.",
               [](const StationCounters &station) { return station.answers; });
    perStation("cnet_gateway_station_repetitions_total", "counter",
               "Requests that were sent again.",
               [](const StationCounters &station) { return station.retries; });
}

void Writer::writeErrors()
{
    m_text.begin("cnet_gateway_station_errors_total", "counter", "What went wrong, by its kind.");
    eachStation([this](const QString &line, const QString &station,
                       const StationCounters &counters) {
        const std::array<std::pair<const char *, qint64>, 5> kinds{
            {{"no_answer", counters.timeouts},
             {"bad_check", counters.badChecks},
             {"unusable", counters.bad - counters.badChecks},
             {"refused", counters.refusals},
             {"late", counters.late}}};
        for (const auto &kind : kinds) {
            m_text.add({{"line", line}, {"station", station}, {"kind", QLatin1String(kind.first)}},
                       static_cast<double>(kind.second));
        }
    });
}

void Writer::writeTimes()
{
    m_text.begin("cnet_gateway_station_response_seconds", "histogram",
                 "From the first sending of a request until its answer was complete.");
    eachStation(
        [this](const QString &line, const QString &station, const StationCounters &counters) {
            writeTimesOf(line, station, counters.times);
        });
}

void Writer::writeTimesOf(const QString &line, const QString &station,
                          const ResponseHistogram &times)
{
    const QVector<ResponseHistogram::Bucket> buckets = times.buckets();
    const auto add = [&](double endMs, const QString &name) {
        qint64 count = 0;
        for (const ResponseHistogram::Bucket &bucket : buckets) {
            count += bucket.toMs <= endMs ? bucket.count : 0;
        }
        m_text.add({{"line", line}, {"station", station}, {"le", name}}, static_cast<double>(count),
                   "_bucket");
    };
    double endMs = kFirstBucketMs;
    for (int i = 0; i < kBuckets; ++i, endMs *= 2) {
        add(endMs, QString::number(endMs * kMs, 'g', 7));
    }
    add(std::numeric_limits<double>::infinity(), QLatin1String("+Inf"));
    const auto count = static_cast<double>(times.count());
    m_text.add({{"line", line}, {"station", station}}, times.meanMs() * count * kMs, "_sum");
    m_text.add({{"line", line}, {"station", station}}, count, "_count");
}

void Writer::writeLedger()
{
    const RecorderState &recorder = m_snapshot.recorder;
    one("cnet_gateway_ledger_up", "gauge", "1: the ledger can store.",
        recorder.trouble.isEmpty() ? 1 : 0);
    one("cnet_gateway_ledger_batches", "gauge", "Batches that are not safe at every sink.",
        static_cast<double>(recorder.ledger.batches));
    one("cnet_gateway_ledger_values", "gauge", "Changes in these batches.",
        static_cast<double>(recorder.ledger.values));
    one("cnet_gateway_ledger_bytes", "gauge", "Bytes of these batches.",
        static_cast<double>(recorder.ledger.bytes));
    one("cnet_gateway_ledger_oldest_seconds", "gauge", "Age of the oldest of these batches.",
        static_cast<double>(recorder.ledger.oldestAgeMs) * kMs);
    one("cnet_gateway_memory_bytes", "gauge", "Bytes of batches on their way to the ledger.",
        static_cast<double>(recorder.memoryBytes));
    one("cnet_gateway_memory_dropped_values_total", "counter",
        "Changes that did not fit the memory while the ledger could not store.",
        static_cast<double>(recorder.memoryDroppedValues));
    writeLedgerRoom();
}

void Writer::writeLedgerRoom()
{
    one("cnet_gateway_ledger_bytes_limit", "gauge", "Bytes beyond which the oldest batches go.",
        static_cast<double>(m_snapshot.bounds.bytes));
    one("cnet_gateway_ledger_age_limit_seconds", "gauge", "Age beyond which batches go.",
        static_cast<double>(m_snapshot.bounds.ageMs) * kMs);
    m_text.begin("cnet_gateway_ledger_left_seconds", "gauge",
                 "Until a limit is reached when nothing is confirmed; not in the first minute.");
    if (const std::optional<double> hours = m_snapshot.recorder.ledger.hoursLeft) {
        m_text.add({}, *hours * kSecondsOfHour);
    }
}

void Writer::writeSinks()
{
    perSink("cnet_gateway_sink_ready", "gauge", "1: the sink takes batches.",
            [](const SinkMeters &sink) { return sink.state.isReady ? 1 : 0; });
    perSink("cnet_gateway_sink_values_total", "counter",
            "Changes that the sink was handed, those handed again included.",
            [](const SinkMeters &sink) { return sink.state.values; });
    perSink("cnet_gateway_sink_dropped_values_total", "counter",
            "Changes that the ledger's limits took from the sink.",
            [](const SinkMeters &sink) { return sink.state.droppedValues; });
    perSink("cnet_gateway_sink_waiting_batches", "gauge", "Batches that are not safe at the sink.",
            [](const SinkMeters &sink) { return sink.state.waitingBatches; });
    perSink("cnet_gateway_sink_waiting_seconds", "gauge", "Age of the oldest of these batches.",
            [](const SinkMeters &sink) { return static_cast<double>(sink.state.waitingMs) * kMs; });
}

} // namespace

QByteArray metricsText(const Snapshot &snapshot, const ProcessUsage &usage, qint64 nowMs)
{
    return Writer(snapshot, usage, nowMs).write();
}

} // namespace cnet::gateway
