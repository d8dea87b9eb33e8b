#pragma once

#include <qwt_date_scale_draw.h>
#include <qwt_date_scale_engine.h>
#include <qwt_scale_draw.h>

#include <QString>

#include <memory>
#include <vector>

class QFontMetrics;

namespace cnet::view {

/** Local times; the day too where there are several. */
class TimeScaleDraw : public QwtDateScaleDraw
{
public:
    TimeScaleDraw();

    /** How far a label stands over an end of the axis, in pixels. */
    static int overhang(const QFontMetrics &metrics);
};

std::unique_ptr<QwtDateScaleEngine> makeTimeScaleEngine();

/** The name of a lane, and where it stands. */
struct LaneName
{
    double middle = 0;
    QString name;
};

/** The names of lanes as labels of a scale. */
class LaneScaleDraw : public QwtScaleDraw
{
public:
    void setNames(const std::vector<LaneName> &names) { m_names = names; }

    /** With a label for each name. @param top of the scale, which begins at 0 */
    QwtScaleDiv division(double top) const;

    /** Of a long name the end, which tells it from its neighbours. */
    QwtText label(double value) const override;

private:
    std::vector<LaneName> m_names;
};

} // namespace cnet::view
