#include "panel/views/screen_lines.h"

#include <algorithm>

namespace cnet::panel {

namespace {

const char *titleOf(View view)
{
    switch (view) {
    case View::Values:
        break;
    case View::Stations:
        return "  STATIONS";
    case View::Blocks:
        return "  BLOCKS";
    case View::Log:
        return "  LOG";
    }
    return "";
}

StyledLine heading(const ViewInput &input)
{
    const MonitorStatus &status = input.status;
    StyledLine line(QString::fromLatin1("%1  %2  round %3")
                        .arg(status.time.toString(QLatin1String("HH:mm:ss")), status.link,
                             QString::number(status.rounds)));
    line.append(QLatin1String(titleOf(input.state.view)), Emphasis::Heading);
    if (!input.state.filter.isEmpty()) {
        line.append(QLatin1String("  filter: ") + input.state.filter);
    }
    if (!status.linkLost.isEmpty()) {
        line.append(QLatin1String("  LINK DOWN: ") + status.linkLost, Emphasis::Bad);
    }
    return line;
}

ViewBody bodyOf(const ViewInput &input, int columns, int rows)
{
    switch (input.state.view) {
    case View::Values:
        break;
    case View::Stations:
        return stationsView(input);
    case View::Blocks:
        return blocksView(input);
    case View::Log:
        return logView(input);
    }
    return valuesView(input, columns, rows);
}

} // namespace

QVector<StyledLine> screenLines(const ViewInput &input, int columns, int rows, int &scrolled)
{
    const ViewBody body = bodyOf(input, columns, rows);
    QVector<StyledLine> lines{heading(input)};
    lines += body.titles;
    const int room = std::max(1, rows - static_cast<int>(lines.size() + body.bottom.size()));
    const bool fits = body.rows <= room;
    const int shown = fits ? body.rows : room - 1;
    scrolled = fits ? 0 : std::clamp(scrolled, 0, body.rows - shown);
    for (int row = scrolled; row < scrolled + shown; ++row) {
        lines.append(body.row(row));
    }
    if (!fits) {
        lines.append(StyledLine(QString::fromLatin1("... lines %1 to %2 of %3")
                                    .arg(scrolled + 1)
                                    .arg(scrolled + shown)
                                    .arg(body.rows)));
    } else if (body.rows == 0 && !input.state.filter.isEmpty()) {
        lines.append(StyledLine(QLatin1String("nothing here contains the filter")));
    }
    lines += body.bottom;
    for (StyledLine &line : lines) {
        line.truncate(columns);
    }
    return lines;
}

} // namespace cnet::panel
