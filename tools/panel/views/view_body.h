#pragma once

#include "panel/output/monitor_output.h"
#include "panel/terminal/sparkline.h"
#include "panel/terminal/styled_line.h"
#include "panel/views/value_history.h"
#include "panel/views/view_state.h"

#include <QStringList>

#include <functional>

namespace cnet::panel {

/** All that a view is made of. */
struct ViewInput
{
    const Monitor &monitor;
    const MonitorStatus &status;
    const ViewState &state;
    const ValueHistory &history;
    const QStringList &log; ///< what the program has said, oldest first
    Glyphs glyphs = Glyphs::Ascii;
};

/**
 * A list that a screen shows a part of. Its lines are made one by one, so that a long list costs
 * no more than what is seen of it.
 */
struct ViewBody
{
    QVector<StyledLine> titles;
    int rows = 0;
    std::function<StyledLine(int row)> row;
    QVector<StyledLine> bottom; ///< stays below the list
};

/** The items with their values; below them the stations. @param rows of the screen */
ViewBody valuesView(const ViewInput &input, int columns, int rows);
/** The load of the line, and all counters of each station. */
ViewBody stationsView(const ViewInput &input);
/** The counters of each block. */
ViewBody blocksView(const ViewInput &input);
/** What the program has said, the latest last. */
ViewBody logView(const ViewInput &input);

/** "12 ms", "3.4 s", "15 min"; a dash for what never was. */
QString ageText(qint64 ageMs);

} // namespace cnet::panel
