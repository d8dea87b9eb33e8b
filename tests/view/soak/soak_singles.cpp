#include "view/soak/soak_singles.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>

#include <cstdio>
#include <functional>

namespace cnet::view {

namespace {

constexpr int kRows = 10000;
constexpr int kSettleMs = 1500;
constexpr int kPatienceMs = 120000;

void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void once(LoopMeter &meter, const char *what, const std::function<void()> &work)
{
    wait(kSettleMs);
    meter.setDoing(QLatin1String(what));
    meter.takeWorst();
    const double beginMs = threadCpuMs();
    work();
    const double workMs = threadCpuMs() - beginMs;
    wait(kSettleMs);
    const LoopMeter::Worst worst = meter.takeWorst();
    std::printf("  %-46s %7.1f ms at once; longest gap %7.1f ms, by the clock %7.1f ms\n", what,
                workMs, worst.cpuMs, worst.wallMs);
    std::fflush(stdout);
}

QByteArray manyTags()
{
    QByteArray content = "name,register,address,type,count\n";
    for (int i = 0; i < kRows; ++i) {
        const QByteArray number = QByteArray::number(i);
        content += "row." + number + ",D_W," + number + ",u16,1\n";
    }
    return content;
}

} // namespace

void runSingles(MainWindow &window, SoakLoad &load, LoopMeter &meter, const QString &folder)
{
    std::printf("single actions, processor time:\n");
    WindowPages &pages = window.pages();
    FramesPage &frames = load.frames();
    load.stop();
    QElapsedTimer patience;
    patience.start();
    while (frames.shown().log().exchanges() < FrameModel::kMostExchanges * 9 / 10 &&
           patience.elapsed() < kPatienceMs) {
        wait(kSettleMs);
    }
    std::printf("  frames in the table: %d rows\n", frames.shown().log().size());
    pages.setCurrentWidget(&frames);
    const QString capture = folder + QLatin1String("/soak.pcapng");
    const auto filter = [&frames](const char *text) {
        FrameQuery query;
        query.text = QString::fromLatin1(text);
        frames.filterBar().setQuery(query);
    };
    frames.setPaused(true);
    once(meter, "filter frames: nothing has it", [filter] { filter("nowhere to be found"); });
    once(meter, "filter frames: all again", [filter] { filter(""); });
    once(meter, "filter frames: all have it", [filter] { filter("station"); });
    once(meter, "filter frames: every now and then", [filter] { filter("check"); });
    once(meter, "filter frames: all again", [filter] { filter(""); });
    once(meter, "save a capture", [&] { frames.saveCapture(capture); });
    once(meter, "open a capture", [&] { frames.openCapture(capture); });
    once(meter, "back to the line", [&] { frames.showLive(); });
    frames.setPaused(false);
    QFile file(folder + QLatin1String("/many.csv"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(manyTags());
        file.close();
    }
    pages.line().close();
    pages.setCurrentWidget(&pages.values());
    once(meter, "open a file of 10 000 tags", [&] { pages.values().openFile(file.fileName()); });
    once(meter, "connect, with 10 000 tags", [&] { load.connectLine(); });
    once(meter, "close the line, with 10 000 tags", [&] { pages.line().close(); });
}

} // namespace cnet::view
