#pragma once

#include "view/frames/frames_page.h"
#include "view/shell/main_window.h"
#include "view/simulator/simulator_page.h"
#include "view/soak/loop_meter.h"

#include "host/tagfile/tag_monitor.h"

#include <QTimer>
#include <QVector>

#include <array>

namespace cnet::view {

/** What went where so far. */
struct LoadCounts
{
    qint64 fromLine = 0;   ///< samples that came through the line into the traces
    qint64 besideLine = 0; ///< samples from readings that no exchange brought
    qint64 missed = 0;     ///< of those that were due, too late after a stall
    qint64 exchanges = 0;
    int pagesShown = 0;
    int reopened = 0;
    int faultChanges = 0;
    int filters = 0;
};

/**
 * Work for the pages of a window: a simulated PLC whose values change each millisecond, read as
 * fast as it goes, with faults now and then; what is missing to the rate one wants, put into the
 * monitor of the same tags as if it had been read; pages that are shown in turn, filters that are
 * typed, a line that is closed and opened again.
 */
class SoakLoad : public QObject
{
    Q_OBJECT

public:
    static constexpr int kTraces = 50;
    static constexpr int kChangesPerMs = 25; ///< into all traces

    /** @param window, meter must outlive this object */
    SoakLoad(MainWindow &window, LoopMeter &meter, QObject *parent = nullptr);

    /**
     * Opens tags and traces, and fills these.
     * @param folder for files
     * @param samples of each trace, of the past, 0 to TraceSet::kMostSamples
     * @return one sentence; empty: it is done
     */
    QString prepare(const QString &folder, int samples);

    void start();
    void stop();

    const LoadCounts &counts() const { return m_counts; }
    FramesPage &frames() const { return *m_frames; }
    SimulatorPage &simulator() const { return *m_simulator; }

    /** Reads the tags again as fast as it goes. */
    void connectLine();

private:
    void feed();
    qint64 takeCame();
    void readAll(const Session &session, const TagMonitor &tags);
    quint32 random();
    void showNext();
    void changeFaults();
    void typeFilter();
    void reopen();
    void act(const char *what, int everyMs, void (SoakLoad::*doIt)());

    MainWindow &m_window;
    LoopMeter &m_meter;
    FramesPage *m_frames = nullptr;
    SimulatorPage *m_simulator = nullptr;
    QVector<QTimer *> m_timers;
    QTimer m_feed;
    LoadCounts m_counts;
    std::array<int, kTraces> m_known{}; ///< samples of each trace that are counted
    qint64 m_fedMs = 0;                 ///< up to here all samples are in
    double m_owed = 0;
    quint32 m_random = 1;
};

} // namespace cnet::view
