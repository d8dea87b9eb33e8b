#pragma once

#include "host/support/test_registers.h"
#include "host/support/virtual_line.h"

#include <host/scan/scan.h>

namespace cnet {

inline RegisterInfo words(const char *name, int highest)
{
    RegisterInfo reg = testRegister("D_W");
    reg.name = QLatin1String(name);
    reg.highest = highest;
    return reg;
}

inline QVector<int> firstStations(int count)
{
    QVector<int> stations;
    for (int station = 0; station < count; ++station) {
        stations.append(station);
    }
    return stations;
}

// A serial line: stations take only what comes with their settings, and what they say gets to
// whoever has the line open by then.
class SerialLine : public VirtualLine
{
public:
    SerialLine(VirtualClock &clock, bool right, quint32 seed)
        : VirtualLine(clock, seed)
        , m_right(right)
    {}
    void send(const QByteArray &bytes) override
    {
        if (m_right) {
            VirtualLine::send(bytes);
        } else {
            ++requests;
        }
    }

private:
    bool m_right;
};

// A scan of stations that are there from the beginning.
struct Bench
{
    explicit Bench(const ScanOptions &options, const QVector<int> &stations = {1},
                   const LineSettings &spoken = LineSettings())
    {
        const auto factory = [this, stations, spoken](const LineSettings &line) {
            tried.append(line.text());
            auto made = std::make_unique<SerialLine>(clock, line.text() == spoken.text(), seed);
            made->manners = manners;
            made->opensFine = opensFine;
            for (const int station : stations) {
                made->bus.add(station, plc::Model::K120s);
            }
            if (prepare) {
                prepare(*made);
            }
            return made;
        };
        scan = std::make_unique<Scan>(factory, options, clock);
        QObject::connect(scan.get(), &Scan::frameSent, scan.get(),
                         [this](const QByteArray &frame) { sent.append(frame); });
    }
    bool run(qint64 ms = 3600000)
    {
        scan->start();
        return clock.runUntil([this] { return scan->isFinished(); }, ms);
    }
    int most() const
    {
        return scan->mostSearchFrames() +
               static_cast<int>(scan->found().size()) * scan->mostSurveyFrames();
    }

    VirtualClock clock;
    LineManners manners;
    bool opensFine = true;
    quint32 seed = 1;
    std::function<void(VirtualLine &)> prepare;
    QStringList tried;
    QList<QByteArray> sent;
    std::unique_ptr<Scan> scan;
};

inline ScanOptions optionsFor(const QVector<int> &stations,
                              const QVector<RegisterInfo> &registers = {})
{
    ScanOptions options;
    options.stations = stations;
    options.registers = registers;
    return options;
}

// As a K120S has them: D to 4999, M to 191, T to 255.
inline const QVector<RegisterInfo> kRegisters{words("D_W", 9999), words("M_W", 255),
                                              words("T_W", 255)};

} // namespace cnet
