#include "panel/views/counters_columns.h"
#include "panel/views/view_body.h"

namespace cnet::panel {

namespace {

const int kStation = 11;
const int kState = 11;
const int kBlock = 20;

bool isBad(const MonitorStatus &status, StationState state)
{
    return !status.linkLost.isEmpty() ||
           (state != StationState::Answers && state != StationState::Unknown);
}

void appendMark(StyledLine &line, bool bad)
{
    line.appendCell(QLatin1String(bad ? "!" : " "), 2, bad ? Emphasis::Bad : Emphasis::None);
}

StyledLine stationLine(const MonitorStatus &status, int station, const StationCounters &counters)
{
    const bool bad = isBad(status, counters.state);
    StyledLine line;
    appendMark(line, bad);
    line.appendCell(QString::number(station), kStation - 2);
    line.appendCell(status.linkLost.isEmpty() ? stateName(counters.state)
                                              : QLatin1String("line down"),
                    kState, bad ? Emphasis::Bad : Emphasis::None);
    appendCounters(line, counters);
    return line;
}

QString rateText(const Statistics &statistics, const LineTraffic &traffic)
{
    const std::optional<double> load = statistics.loadPercent(traffic);
    const QString rate = QString::fromLatin1("%1 bytes/s").arg(traffic.bytesPerSecond(), 0, 'f', 0);
    return load ? QString::fromLatin1("%1 % (%2)").arg(*load, 0, 'f', 1).arg(rate) : rate;
}

QString loadText(const MonitorStatus &status)
{
    if (status.statistics == nullptr || status.statistics->sinceMs() < 0) {
        return QLatin1String("line load: -");
    }
    const Statistics &statistics = *status.statistics;
    const LineMeter &line = statistics.line();
    const QString settings = statistics.lineSettings()
                                 ? QLatin1String(" of ") + statistics.lineSettings()->text()
                                 : QString();
    return QString::fromLatin1("line load: %1 now, %2 in all%3")
        .arg(rateText(statistics, line.recent(status.nowMs)),
             rateText(statistics, line.all(status.nowMs)), settings);
}

ViewBody listOf(const QVector<StyledLine> &titles, const QVector<StyledLine> &lines,
                const ViewState &state)
{
    QVector<StyledLine> admitted;
    for (const StyledLine &line : lines) {
        if (state.admits(line.text())) {
            admitted.append(line);
        }
    }
    ViewBody body;
    body.titles = titles;
    body.rows = static_cast<int>(admitted.size());
    body.row = [admitted](int row) { return admitted.at(row); };
    return body;
}

StyledLine blockLine(const QString &name, const ExchangeCounters &counters)
{
    StyledLine line;
    // Nothing ever came of it but refusals or silence.
    appendMark(line, counters.frames > 0 && counters.answers == 0);
    line.appendCell(name, kBlock);
    appendCounters(line, counters);
    return line;
}

} // namespace

ViewBody stationsView(const ViewInput &input)
{
    StyledLine titles;
    titles.appendCell(QLatin1String("  STATION"), kStation, Emphasis::Heading);
    titles.appendCell(QLatin1String("STATE"), kState, Emphasis::Heading);
    appendCounterTitles(titles);
    QVector<StyledLine> lines;
    const QMap<int, StationCounters> &stations = input.status.stations;
    for (auto it = stations.cbegin(); it != stations.cend(); ++it) {
        lines.append(stationLine(input.status, it.key(), it.value()));
    }
    return listOf({StyledLine(loadText(input.status)), titles}, lines, input.state);
}

ViewBody blocksView(const ViewInput &input)
{
    StyledLine titles;
    titles.appendCell(QLatin1String("  BLOCK"), 2 + kBlock, Emphasis::Heading);
    appendCounterTitles(titles);
    QVector<StyledLine> lines;
    if (input.status.statistics != nullptr) {
        const BlockBook &blocks = input.status.statistics->blocks();
        for (const AddressRange &range : blocks.sorted()) {
            lines.append(
                blockLine(QString::fromLatin1("%1/%2").arg(range.station).arg(range.text()),
                          blocks.all().value(range)));
        }
        if (blocks.others().frames > 0) {
            lines.append(blockLine(QLatin1String("others"), blocks.others()));
        }
    }
    return listOf({titles}, lines, input.state);
}

ViewBody logView(const ViewInput &input)
{
    QVector<StyledLine> lines;
    for (const QString &text : input.log) {
        lines.append(StyledLine(text));
    }
    if (lines.isEmpty()) {
        lines.append(StyledLine(QLatin1String("nothing was said yet")));
    }
    return listOf({StyledLine(QLatin1String("TIME      MESSAGE"), Emphasis::Heading)}, lines,
                  input.state);
}

} // namespace cnet::panel
