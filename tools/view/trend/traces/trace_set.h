#pragma once

#include "view/trend/series/trace_store.h"
#include "view/trend/traces/trend_view.h"

#include "host/monitor/quality.h"

#include <QAbstractTableModel>
#include <QPalette>
#include <QString>

#include <memory>
#include <vector>

namespace cnet::view {

/** What one chooses of a trace. */
struct TraceChoice
{
    QString name;   ///< of a tag, or of one value of an array: "mould.zones[2]"
    int colour = 0; ///< see traceColour()
    int pane = 0;   ///< from 0; a bit has a lane in a pane of its own
    Side side = Side::Left;
    bool isVisible = true;
};

/** What the tag says of it. */
struct TraceKind
{
    QString unit;
    bool isBit = false;
    int decimals = 0; ///< that its scale has

    bool operator==(const TraceKind &other) const
    {
        return unit == other.unit && isBit == other.isBit && decimals == other.decimals;
    }
};

/** A trace with what it has collected. */
struct Trace
{
    TraceChoice choice;
    TraceKind kind;
    std::shared_ptr<TraceStore> store;
    Quality quality = Quality::NeverRead; ///< of its newest entry
};

/** The traces, as a table of name, value, scale and pane that can be edited. */
class TraceSet : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Name, Value, ScaleSide, PaneNumber, kColumns };
    static constexpr int kMostTraces = 50;
    static constexpr int kMostSamples = 500000; ///< of a trace, about 7 MB

    using QAbstractTableModel::QAbstractTableModel;

    int count() const { return static_cast<int>(m_traces.size()); }
    bool isFull() const { return count() >= kMostTraces; }
    /** @param trace 0 to count() - 1 */
    const Trace &at(int trace) const { return m_traces[static_cast<size_t>(trace)]; }
    /** @return -1: none has the name */
    int indexOf(const QString &name) const;

    /** A colour that the fewest have. */
    int freeColour() const;

    /** @return its index; -1: there are too many, or one has the name */
    int add(const TraceChoice &choice, const TraceKind &kind);
    void removeAt(int trace);
    void clear();

    void setKind(int trace, const TraceKind &kind);
    void setColour(int trace, int colour);
    void setSide(int trace, Side side);
    /** @param pane 0 to TrendView::kMostPanes - 1 */
    void setPane(int trace, int pane);
    void setVisible(int trace, bool isVisible);
    /** Of what it has collected last; nobody is told. */
    void setQuality(int trace, Quality quality);

    /** The one in front of all others; -1: none. */
    int highlighted() const { return m_highlighted; }
    void setHighlighted(int trace);

    /** A pane is no more: its traces go to the one before, and those behind move up. */
    void dropPane(int pane);

    /** Tells views of the newest values. */
    void tellValues();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /** For colours of light or dark grounds. */
    void setPalette(const QPalette &palette);

Q_SIGNALS:
    /** Which there are, or how and where one is drawn, is different. */
    void rearranged();

private:
    bool isTrace(int trace) const { return trace >= 0 && trace < count(); }
    Trace &own(int trace) { return m_traces[static_cast<size_t>(trace)]; }
    void tell(int trace);
    QVariant shown(const Trace &trace, int column) const;
    QVariant edited(const Trace &trace, int column) const;

    std::vector<Trace> m_traces;
    int m_highlighted = -1;
    QPalette m_palette;
};

/** "press.speed (1/min)" */
QString traceTitle(const Trace &trace);

/** A value for people; a dash where there is none. @param decimals that it has, unless it needs
 * more
 */
QString traceText(double value, int decimals);

} // namespace cnet::view
