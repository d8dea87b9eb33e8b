#pragma once

#include "view/trend/series/trace_item.h"
#include "view/trend/traces/trend_marks.h"
#include "view/trend/traces/trend_view.h"

#include <qwt_plot.h>

#include <QString>

#include <memory>
#include <optional>
#include <vector>

class QDeadlineTimer;
class QwtPlotGrid;

namespace cnet::view {

class LiveTrace;

/** A trace as a pane draws it. */
struct PaneTrace
{
    std::shared_ptr<const TraceStore> store;
    QString name;
    QString unit; ///< empty: none
    QColor colour;
    Side side = Side::Left;
    Emphasis emphasis = Emphasis::Usual;
};

/** What a pane has. */
enum class PaneKind {
    Values, ///< traces by two scales
    Lanes,  ///< bits, one over the other
};

/** What all panes show in common. */
struct Frame
{
    Range time;
    qint64 liveMs = 0; ///< values hold to here, and nothing behind it is drawn
};

/** One plot of several that have the same time axis. */
class Pane : public QwtPlot
{
    Q_OBJECT

public:
    /** @param cursors, markers must outlive this */
    Pane(PaneKind kind, const Cursors &cursors, const Markers &markers, QWidget *parent = nullptr);
    ~Pane() override;

    PaneKind kind() const { return m_kind; }

    /** Draws these from now on. The last ones are in front, and a strong one before all. */
    void setTraces(const std::vector<PaneTrace> &traces);
    bool hasTraces(Side side) const;
    const std::vector<PaneTrace> &traces() const { return m_traces; }

    /** Bounds with all that the traces of a side are in the time; empty where nothing is known. */
    std::optional<Range> fitted(Side side, const Frame &frame) const;

    /** Begins the next picture. @param scales ignored by lanes */
    void begin(const Frame &frame, const PaneScales &scales);

    /** Works out some of the next picture, one trace at least. @return false: there is more */
    bool prepare(const QDeadlineTimer &until);

    /** Draws the next picture as soon as the event loop runs, with all that is not prepared. */
    void present();

    /** What a scale takes across, in pixels; it gets at least as much as is set. */
    int neededExtent(Side side);
    void setExtent(Side side, int pixels);

    /** Half a label of the time axis, which stands over its ends. */
    int timeOverhang() const;

    /** Whether the time axis has its labels; without, the pane is lower. */
    void setTimesShown(bool areShown);

    /** Whether keys go to this pane: it has a frame of the palette's highlight then. */
    void setCurrent(bool isCurrent);

    double timeAt(double canvasX) const;
    double valueAt(Side side, double canvasY) const;
    double xOf(double timeMs) const { return transform(xBottom, timeMs); }

    /** Qwt's would have room for all labels that a scale may ever have. */
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void colour();
    void useFont();
    void nameScale(Side side);
    void layLanes();

    PaneKind m_kind;
    std::vector<PaneTrace> m_traces;
    std::vector<std::unique_ptr<LiveTrace>> m_items;
    QwtPlotGrid *m_grid; ///< the plot's, as the marks are
    Frame m_frame;
    PaneScales m_scales;
    bool m_isCurrent = false;
};

} // namespace cnet::view
