// Many traces of many samples in a plot of a screen's size: what a full redraw costs, and taking
// one more sample for each; the plain curves of Qwt beside it, in the same run. Times are of this
// thread's processor alone; the least and the middle of several rounds.
//
//   QT_QPA_PLATFORM=offscreen bench_view [traces] [samples] [rounds]

#include "view/trend/series/trace_item.h"

#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_point_data.h>
#include <qwt_series_data.h>

#include <QApplication>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <vector>

using namespace cnet::view;

namespace {

constexpr qint64 kStartMs = 1700000000000;
constexpr int kStepMs = 10;
constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

struct Load
{
    int traces = 50;
    int samples = 100000;
    int rounds = 15;
};

double threadMs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

struct Times
{
    double least = 0;
    double middle = 0;
};

Times measure(int rounds, const std::function<void()> &work)
{
    work(); // what is made once
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) {
        const double begin = threadMs();
        work();
        times.push_back(threadMs() - begin);
    }
    std::sort(times.begin(), times.end());
    return {times.front(), times[times.size() / 2]};
}

void print(const char *what, const Times &times)
{
    std::printf("%-44s %9.2f ms least %9.2f ms middle\n", what, times.least, times.middle);
}

/** A measured value: it wanders over its scale, with noise of some percent of it. */
class Signal
{
public:
    Signal(unsigned seed, double noise)
        : m_random(seed)
        , m_noise(noise)
        , m_place(std::uniform_real_distribution<double>(10, 90)(m_random))
    {}

    double next()
    {
        m_place += std::uniform_real_distribution<double>(-0.1, 0.1)(m_random);
        m_place = std::max(0.0, std::min(100.0, m_place));
        return m_place + std::uniform_real_distribution<double>(-m_noise, m_noise)(m_random);
    }

private:
    std::mt19937 m_random;
    double m_noise;
    double m_place;
};

class Plot : public QwtPlot
{
public:
    explicit Plot(const Load &load)
    {
        setCanvas(new QwtPlotCanvas);
        const qint64 lastMs = kStartMs + qint64(load.samples) * kStepMs;
        setAxisScale(xBottom, static_cast<double>(kStartMs), static_cast<double>(lastMs));
        setAxisScale(yLeft, 0, 100);
        resize(kWidth, kHeight);
        show();
        QApplication::processEvents();
        resize(2 * kWidth - canvas()->width(), 2 * kHeight - canvas()->height());
        QApplication::processEvents();
    }

    /** Draws all anew, as the screen gets it. */
    void redraw()
    {
        replot();
        canvas()->repaint();
    }
};

using Stores = std::vector<std::unique_ptr<TraceStore>>;

Stores filled(const Load &load, double noise)
{
    Stores stores;
    for (int i = 0; i < load.traces; ++i) {
        stores.push_back(std::make_unique<TraceStore>());
        Signal signal(static_cast<unsigned>(i), noise);
        for (int k = 0; k < load.samples; ++k) {
            stores.back()->append(kStartMs + qint64(k) * kStepMs, signal.next());
        }
    }
    return stores;
}

QColor colourOf(int trace)
{
    return QColor::fromHsv(trace * 67 % 360, 200, 150);
}

void measureItems(const Load &load, const Stores &stores, const char *name)
{
    Plot plot(load);
    for (int i = 0; i < load.traces; ++i) {
        auto *item = new TraceItem(*stores[static_cast<size_t>(i)]); // the plot deletes it
        item->setColour(colourOf(i));
        item->attach(&plot);
    }
    print(name, measure(load.rounds, [&plot] { plot.redraw(); }));
}

void measureCurves(const Load &load, const Stores &stores)
{
    Plot plot(load);
    for (int i = 0; i < load.traces; ++i) {
        const TraceStore &store = *stores[static_cast<size_t>(i)];
        QVector<QPointF> points;
        for (int k = 0; k < store.entries(); ++k) {
            const TraceStore::Sample sample = store.sample(k);
            points.append(QPointF(static_cast<double>(sample.atMs), sample.value));
        }
        auto *curve = new QwtPlotCurve; // the plot deletes it
        curve->setPen(colourOf(i), 0);
        curve->setData(new QwtPointSeriesData(points));
        curve->attach(&plot);
    }
    print("redraw, plain curves of Qwt",
          measure(std::max(3, load.rounds / 5), [&plot] { plot.redraw(); }));
}

void measureAppending(const Load &load, Stores &stores)
{
    qint64 atMs = kStartMs + qint64(load.samples) * kStepMs;
    double value = 0;
    const auto appendAll = [&] {
        atMs += kStepMs;
        value += 1;
        for (const auto &store : stores) {
            store->append(atMs, value);
        }
    };
    std::vector<double> times;
    for (int i = 0; i < 10000; ++i) {
        const double begin = threadMs();
        appendAll();
        times.push_back(threadMs() - begin);
    }
    std::sort(times.begin(), times.end());
    std::printf("%-44s %9.4f ms middle %8.4f ms worst\n", "a sample to each trace",
                times[times.size() / 2], times.back());
}

int argument(const QStringList &arguments, int place, int usual)
{
    const int number = arguments.value(place).toInt();
    return number > 0 ? number : usual;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    Load load;
    load.traces = argument(arguments, 1, load.traces);
    load.samples = argument(arguments, 2, load.samples);
    load.rounds = argument(arguments, 3, load.rounds);
    std::printf("%d traces of %d samples, %d x %d\n", load.traces, load.samples, kWidth, kHeight);

    Stores stores = filled(load, 2);
    measureItems(load, stores, "redraw");
    measureItems(load, filled(load, 0), "redraw, without noise");
    measureItems(load, filled(load, 50), "redraw, noise over half of the height");
    {
        Plot empty(load);
        print("redraw, no trace", measure(load.rounds, [&empty] { empty.redraw(); }));
    }
    measureCurves(load, stores);

    qint64 bytes = 0;
    qint64 samples = 0;
    for (const auto &store : stores) {
        bytes += store->bytes();
        samples += store->size();
    }
    std::printf("%-44s %9.2f bytes\n", "memory of a sample",
                static_cast<double>(bytes) / static_cast<double>(samples));
    measureAppending(load, stores);
    return 0;
}
