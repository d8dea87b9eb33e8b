#pragma once

#include <QObject>

#include <vector>

namespace cnet::view {

/** From one number to a greater one: times in ms since the epoch, or values. */
struct Range
{
    double from = 0;
    double to = 1;

    double length() const { return to - from; }
    bool holds(double number) const { return number >= from && number <= to; }
};

bool operator==(const Range &left, const Range &right);

/** Which scale of a pane a trace is drawn by. */
enum class Side { Left, Right };

/** Where a scale's bounds come from. */
enum class Scaling {
    Auto,  ///< what is seen of its traces
    Fixed, ///< they stay
};

/** A scale of values. */
struct Scale
{
    Scaling scaling = Scaling::Auto;
    Range range; ///< as it was shown last where it is automatic
};

/** Both scales of a pane. */
struct PaneScales
{
    Scale left;
    Scale right;

    Scale &of(Side side) { return side == Side::Left ? left : right; }
    const Scale &of(Side side) const { return side == Side::Left ? left : right; }
};

/** Whether the right edge goes with the time. */
enum class Follow { No, Yes };

/** What is seen: the same time in all panes, and the scales of each. */
struct Sight
{
    Range time; ///< ms since the epoch
    Follow follow = Follow::Yes;
    std::vector<PaneScales> panes;
};

/** What people do to change what they see. Steps of the wheel in a row are one thing to take back,
 * as are keys; a step stands for itself. */
enum class Gesture { Step, Wheel, Keys };

/** What the trend shows of all that it has, and how to get back to what it showed before. */
class TrendView : public QObject
{
    Q_OBJECT

public:
    static constexpr int kMostPanes = 8;
    static constexpr int kMostSteps = 100; ///< back

    /** One pane, and the minute that ends at the time given. */
    explicit TrendView(qint64 nowMs, QObject *parent = nullptr);

    const Sight &sight() const { return m_sight; }
    int panes() const { return static_cast<int>(m_sight.panes.size()); }
    bool isFollowing() const { return m_sight.follow == Follow::Yes; }

    /** Keeps what is seen now for back(). Whoever is about to change it by hand calls this first.
     */
    void remember(Gesture gesture);

    /** Shows what was remembered last. Nothing happens where there is nothing. */
    void back();
    bool canGoBack() const { return !m_steps.empty(); }

    /** Shows a time, cut to 10 ms at least and ten years at most. It does not follow any more. */
    void setTime(const Range &time);

    /** @param factor below 1: nearer @param aboutMs what stays where it is. It does not follow any
     * more, but where what stays is the right edge. */
    void zoomTime(double factor, double aboutMs);

    void panTime(double ms);

    /** Fixes a scale to bounds; nothing happens where they are none or the pane is not there. */
    void setScale(int pane, Side side, const Range &range);
    void setScaling(int pane, Side side, Scaling scaling);

    /** Of both scales of the pane, about their middle or by a part of their length. */
    void zoomValues(int pane, double factor);
    void panValues(int pane, double part);

    /** What an automatic scale came to; nobody is told. */
    void noteAutomatic(int pane, Side side, const Range &range);

    /** The right edge goes to the time given, and with the time from now on. */
    void follow(qint64 nowMs);
    void stopFollowing();

    /** Goes on to the time where it follows; nobody is told. */
    void tick(qint64 nowMs);

    /** @param count cut to 1 to kMostPanes */
    void setPanes(int count);

    /** Takes a pane out; the last one stays. */
    void removePane(int pane);

    /** Shows all this, with nothing to go back to. Bounds that are none are left as they are. */
    void restore(const Sight &sight);

Q_SIGNALS:
    /** The sight is another one. */
    void changed();
    /** There are more panes, or less. */
    void panesChanged();

private:
    bool isPane(int pane) const { return pane >= 0 && pane < panes(); }
    void stop();

    Sight m_sight;
    std::vector<Sight> m_steps;
    Gesture m_last = Gesture::Step;
};

/** A range that can be drawn: finite, rising, and not too fine for its numbers. @return false where
 * it cannot be made one */
bool makeDrawable(Range &range);

} // namespace cnet::view
