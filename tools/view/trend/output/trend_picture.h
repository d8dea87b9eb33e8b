#pragma once

#include "view/trend/plot/trend_plot.h"

#include <QByteArray>
#include <QImage>

namespace cnet::view {

/** The panes as they are seen, with the names and colours of their traces below. */
QImage trendImage(const TrendPlot &plot);

/** The same as lines, for print. */
QByteArray trendSvg(const TrendPlot &plot, const QString &title);

} // namespace cnet::view
