#pragma once

#include <QString>

namespace cnet::panel {

/** What the monitor's screen shows. */
enum class View { Values, Stations, Blocks, Log };
constexpr int kViews = 4;

/** Whether each value is shown with its extremes and a small curve. */
enum class Trend { Hidden, Shown };

/** What the user has chosen to see. */
struct ViewState
{
    View view = View::Values;
    Trend trend = Trend::Hidden;
    QString filter; ///< only what contains this is shown; empty: all

    bool admits(const QString &text) const
    {
        return filter.isEmpty() || text.contains(filter, Qt::CaseInsensitive);
    }
};

} // namespace cnet::panel
