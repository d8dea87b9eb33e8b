#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <QVector>

#include <array>
#include <chrono>

namespace cnet::view {

/**
 * How long the event loop lets others wait: a timer of 5 ms, and what passes from one of its ticks
 * to the next. Time of the clock tells what people see; processor time of this thread tells what of
 * it the window takes, and not others on the machine.
 */
class LoopMeter : public QObject
{
    Q_OBJECT

public:
    static constexpr int kTickMs = 5;
    static constexpr std::array<double, 7> kBounds{10, 20, 30, 40, 50, 100, 200}; ///< ms

    /** A gap that is worth telling of. */
    struct Gap
    {
        double atS = 0; ///< since start()
        double wallMs = 0;
        double cpuMs = 0;
        QString during; ///< see setDoing()
    };
    struct Worst
    {
        double wallMs = 0;
        double cpuMs = 0;
    };

    explicit LoopMeter(QObject *parent = nullptr);

    void start();

    /** What the window is about to do: gaps from now on are told with it. */
    void setDoing(const QString &what) { m_doing = what; }

    /** What passed at most since this was asked last. */
    Worst takeWorst();

    Worst worst() const { return m_worst; }
    /** The longest by processor time, the longest first. */
    const QVector<Gap> &longest() const { return m_longest; }
    qint64 ticks() const { return m_ticks; }
    /** Of the clock and of this thread since start(). */
    double wallS() const;
    double cpuS() const;

    /** Lines with how many ticks came within each of kBounds, and after the last. */
    QString histogram() const;

private:
    using Counts = std::array<qint64, kBounds.size() + 1>;
    using Instant = std::chrono::steady_clock::time_point;

    void tick();
    void keep(const Gap &gap);

    QTimer m_timer;
    QString m_doing;
    Instant m_begin;
    Instant m_last;
    double m_cpuBeginMs = 0;
    double m_cpuLastMs = 0;
    Counts m_wall{};
    Counts m_cpu{};
    Worst m_worst;
    Worst m_recent;
    QVector<Gap> m_longest;
    qint64 m_ticks = 0;
};

/** Processor time of this thread in ms. */
double threadCpuMs();

} // namespace cnet::view
