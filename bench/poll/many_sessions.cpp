// Many lines in one process and one thread: sessions with a driver and items of their own, at the
// pace that a session has by default. Prints what one of them takes of memory and of a core.
//
//   many_sessions PORT SESSIONS ITEMS SECONDS

#include <host/session.h>

#include <QCoreApplication>
#include <QFile>
#include <QTimer>

#include <cstdio>
#include <ctime>
#include <memory>
#include <vector>

namespace {

// Resident memory in kilobytes.
double memory()
{
    QFile status(QLatin1String("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:")) {
            return line.mid(6).trimmed().split(' ').first().toDouble();
        }
    }
    return 0;
}

// One line: a driver of its own, and its items in blocks of neighbours.
struct Line
{
    cnet::Driver driver;
    std::unique_ptr<cnet::Session> session;
    cnet::Monitor *monitor = nullptr;
};

std::unique_ptr<Line> makeLine(int port, int items)
{
    auto line = std::make_unique<Line>();
    QString error;
    if (!line->driver.load(QString(), error)) {
        std::fprintf(stderr, "%s\n", error.toLocal8Bit().constData());
        return nullptr;
    }
    cnet::LinkAddress address;
    address.host = QLatin1String("127.0.0.1");
    address.port = static_cast<quint16>(port);
    line->session = std::make_unique<cnet::Session>(line->driver, cnet::makeLink(address));
    QVector<cnet::Item> watched;
    for (int i = 0; i < items; ++i) {
        watched.append({1, *line->driver.registers().find(QLatin1String("D_W")), i, 1});
    }
    line->monitor = line->session->monitor(watched);
    line->session->open();
    return line;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_NO_GLIB", "1");
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int port = arguments.value(1).toInt();
    const int sessions = arguments.value(2).toInt();
    const int items = arguments.value(3).toInt();
    const int seconds = arguments.value(4).toInt();
    const double before = memory();
    std::vector<std::unique_ptr<Line>> lines;
    for (int i = 0; i < sessions; ++i) {
        lines.push_back(makeLine(port, items));
        if (!lines.back()) {
            return 1;
        }
    }
    // The first rounds open lines and read everything for the first time.
    std::clock_t began = 0;
    int roundsBefore = 0;
    const auto rounds = [&lines] {
        int sum = 0;
        for (const auto &line : lines) {
            sum += line->session->rounds();
        }
        return sum;
    };
    QTimer::singleShot(5000, [&] {
        began = std::clock();
        roundsBefore = rounds();
    });
    QTimer::singleShot(5000 + seconds * 1000, &application, &QCoreApplication::quit);
    QCoreApplication::exec();
    const double cpu = double(std::clock() - began) / CLOCKS_PER_SEC;
    int good = 0;
    for (const auto &line : lines) {
        good += line->monitor->isGood() ? 1 : 0;
    }
    std::printf("%d sessions of %d items, %d of them good: %.0f kB each, %.2f %% of a core each, "
                "%.1f rounds a second each\n",
                sessions, items, good, (memory() - before) / sessions,
                100 * cpu / seconds / sessions,
                double(rounds() - roundsBefore) / seconds / sessions);
    return good == sessions ? 0 : 1;
}
