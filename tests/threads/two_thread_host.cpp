// A host with an exchange thread and one or two panel threads, which call the driver whenever it
// suits them. It ends with 0 when all that the panel wrote is in the PLC and the panel shows what
// the PLC holds; the thread sanitizer ends it when two threads met inside the driver.
//
//   two_thread_host                one round of each kind
//   two_thread_host --seconds 600  rounds until then

#include "threads/host.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

using namespace threads;

namespace {

constexpr int kTurns = 3000; // of a panel thread in a round

struct Kind
{
    const char *name;
    HostLock lock;
    int panels;
    bool isRude; ///< one more thread starts anew at any moment
};

constexpr std::array<Kind, 5> kKinds = {{{"one panel thread", HostLock::None, 1, false},
                                         {"two panel threads", HostLock::None, 2, false},
                                         {"restarts at any moment", HostLock::None, 1, true},
                                         {"a panel with a lock", HostLock::Panel, 1, false},
                                         {"a lock around every call", HostLock::All, 2, false}}};

int shown(const Written &place)
{
    std::array<unsigned char, 2> data{};
    intf_getData(kStation, *place.regName, place.point.address, 1, data.data());
    return data[0] | data[1] << 8;
}

/** Says where panel, PLC and what was written last differ. @return how many do */
int compare(plc::Bus &bus, const std::vector<Written> &places)
{
    int wrong = 0;
    for (const Written &place : places) {
        const int held = bus.find(kStation)->station.memory().value(place.point).value_or(0xFFFF);
        if (held != place.value || shown(place) != place.value) {
            ++wrong;
            std::printf("%s %d: written %d, PLC %d, panel %d\n",
                        place.regName->toLatin1().constData(), place.point.address, place.value,
                        held, shown(place));
        }
    }
    return wrong;
}

void addOthers(const Host &host, plc::Bus &bus, std::vector<Written> &places)
{
    plc::Memory &memory = bus.find(kStation)->station.memory();
    const auto add = [&places](int address, int value) {
        places.push_back({&names().words, {'D', plc::PointKind::Word, address}, value & 0xFFFF});
    };
    for (int i = 0; i < kThreads; ++i) {
        add(kEchoWord + i, host.echoes[static_cast<std::size_t>(i)]);
    }
    for (int i = 0; i < kLiveWords; ++i) {
        add(i, memory.word('D', i).value_or(0));
    }
}

/** @return how many values are wrong at its end */
int run(const Kind &kind)
{
    Host host(kind.lock);
    plc::Bus bus;
    bus.add(kStation);
    start(host);
    std::thread exchangeThread([&] { exchange(host, bus); });
    std::array<std::vector<Written>, 2> written;
    std::vector<std::thread> panels;
    panels.reserve(written.size());
    for (int i = 0; i < kind.panels; ++i) {
        panels.emplace_back(
            [&, i] { written.at(static_cast<std::size_t>(i)) = usePanel(host, i, kTurns); });
    }
    std::atomic<bool> isEnough{false};
    std::thread rude([&] {
        beThread(1);
        for (int turn = 0; kind.isRude && !isEnough; ++turn) {
            startAgain(host, turn);
        }
    });
    for (std::thread &panel : panels) {
        panel.join();
    }
    isEnough = true;
    rude.join();
    host.panelEnded = true;
    exchangeThread.join();

    int wrong = 0;
    if (!kind.isRude) { // whose writes may be gone
        std::vector<Written> places = written[0];
        places.insert(places.end(), written[1].begin(), written[1].end());
        addOthers(host, bus, places);
        wrong = compare(bus, places);
    }
    intf_setAddrValueChangeCallBack(nullptr);
    intf_initProperty(nullptr, 0, nullptr, nullptr, "", nullptr);
    std::printf("%s: %d exchanges, %d changes, %d callbacks beside another, %d wrong values\n",
                kind.name, host.exchanges.load(), host.changes.load(), host.meetings.load(), wrong);
    return wrong + (host.changes > 0 ? 0 : 1);
}

} // namespace

int main(int count, char **arguments)
{
    const bool isTimed = count == 3 && std::strcmp(arguments[1], "--seconds") == 0;
    if (count != 1 && !isTimed) {
        std::fputs("two_thread_host: only --seconds N is an option\n", stderr);
        return 2;
    }
    const auto end = std::chrono::steady_clock::now() +
                     std::chrono::seconds(isTimed ? std::strtol(arguments[2], nullptr, 10) : 0);
    int wrong = 0;
    int rounds = 0;
    do {
        for (const Kind &kind : kKinds) {
            wrong += run(kind);
        }
        ++rounds;
    } while (wrong == 0 && std::chrono::steady_clock::now() < end);
    std::printf("%d rounds of each kind, %d wrong\n", rounds, wrong);
    return wrong == 0 ? 0 : 1;
}
