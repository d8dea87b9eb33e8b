#include "exchange/soak/soak_plan.h"

#include <algorithm>
#include <iterator>
#include <numeric>

namespace exchange::soak {

namespace {

constexpr char kDevices[] = {'P', 'M', 'K', 'L', 'F', 'T', 'C', 'D'};

std::size_t placeOf(char device)
{
    const auto *const it = std::find(std::begin(kDevices), std::end(kDevices), device);
    return it == std::end(kDevices) ? 0 : static_cast<std::size_t>(it - std::begin(kDevices));
}

int highestWord(char device)
{
    for (const Register &reg : registers()) {
        if (reg.isWord() && reg.device == device) {
            return reg.highest;
        }
    }
    return 0;
}

void chooseWindows(Random &random, Plan &plan)
{
    const int words = random.pick(std::vector<int>{4, 12, 32, 120});
    for (const char device : kDevices) {
        const int there = highestWord(device) + 1;
        Window &window = plan.window(device);
        window.words = std::min(words, there);
        window.word = random.chance(30) ? 0 : random.below(there - window.words + 1);
    }
}

void chooseStations(Random &random, Plan &plan)
{
    const int count = random.between(1, 4);
    std::vector<int> numbers(32);
    std::iota(numbers.begin(), numbers.end(), 0);
    for (int i = 0; i < count; ++i) {
        StationPlan station;
        const int at = random.below(static_cast<int>(numbers.size()));
        station.number = numbers[static_cast<std::size_t>(at)];
        numbers.erase(numbers.begin() + at);
        station.model = random.chance(15) ? plc::Model::K120s : plc::Model::Full;
        station.isThere = i == 0 || !random.chance(10);
        station.seed = random.seed();
        plan.stations.push_back(station);
    }
}

void chooseFaults(Random &random, Plan &plan)
{
    plan.faultKinds = random.pick(std::vector<int>{0, 1, 2, 3, 4, 6, 11});
    plan.faultPercent = random.pick(std::vector<int>{1, 5, 10, 20, 35, 50});
    // Up to the first an answer is in time, up to the second the host throws it away.
    plan.longestDelayMs = random.pick(std::vector<int>{250, 1200, 1200, 3000, 6000});
    plan.quietMs = random.pick(std::vector<int>{1000, 1000, 1000, 100, 0});
}

void chooseWeights(Random &random, Plan &plan)
{
    constexpr std::array<int, kOperations> kUsual = {20, 20, 12, 4, 10, 12, 1, 10, 1, 3,
                                                     3,  4,  15, 2, 4,  2,  1, 2,  1};
    for (std::size_t i = 0; i < kOperations; ++i) {
        const int factor = random.pick(std::vector<int>{0, 1, 1, 1, 4});
        plan.weights[i] = kUsual[i] * factor;
    }
    // Who went away may come back.
    auto &back = plan.weights[static_cast<std::size_t>(Operation::StationBack)];
    back = std::max(back, 2 * plan.weights[static_cast<std::size_t>(Operation::StationAway)]);
    auto &restarts = plan.weights[static_cast<std::size_t>(Operation::Restart)];
    restarts = random.chance(15) ? restarts : 0;
    plan.operationPercent = random.pick(std::vector<int>{2, 10, 25, 50, 90});
    if (random.chance(20)) { // a panel that watches: what changes, changes in the PLC
        plan.operationPercent = 50;
        auto &changes = plan.weights[static_cast<std::size_t>(Operation::PlcChange)];
        changes = 100 * std::max(changes, kUsual[static_cast<std::size_t>(Operation::PlcChange)]);
    }
}

} // namespace

const Window &Plan::window(char deviceLetter) const
{
    return m_windows[placeOf(deviceLetter)];
}

Window &Plan::window(char deviceLetter)
{
    return m_windows[placeOf(deviceLetter)];
}

QByteArray Plan::properties() const
{
    return QByteArray::number(device) + '#' + (cacheOnly ? '1' : '0') + "#0#" +
           QByteArray::number(maxRetries) + '#' + QByteArray::number(blockWords);
}

bool Plan::isSent(const Register &written) const
{
    return !cacheOnly && (blockWords > 0 || written.isContact());
}

int Plan::longestBlock() const
{
    return blockWords > 0 ? blockWords : 60;
}

QString Plan::text() const
{
    return QString::fromLatin1("seed %1 phase %2: %3 stations, properties %4, %5 keys, %6 recipe "
                               "items, up to %7 faults at %8 %%9")
        .arg(QString::number(seed), QString::number(phase),
             QString::number(static_cast<int>(stations.size())), QString::fromLatin1(properties()),
             QString::number(screenKeys), QString::number(recipeItems), QString::number(faultKinds),
             QString::number(faultPercent),
             QLatin1String(severalThreads ? ", several threads" : ""));
}

Random phaseRandom(quint64 seed, int phase)
{
    constexpr quint64 kGolden = 0x9E3779B97F4A7C15ULL;
    return Random((seed + 1) * kGolden ^ static_cast<quint64>(phase) * 0xD1B54A32D192ED03ULL);
}

Plan choosePlan(quint64 seed, int phase, int exchanges)
{
    Random random = phaseRandom(seed, phase);
    Plan plan;
    plan.seed = seed;
    plan.phase = phase;
    plan.exchanges = exchanges;
    plan.cacheOnly = random.chance(3);
    plan.maxRetries = random.pick(std::vector<int>{3, 3, 3, 0, 1, 2, 5});
    plan.blockWords = random.pick(std::vector<int>{60, 60, 58, 30, 8, 4, 0});
    plan.smallestValues = random.pick(std::vector<int>{0, 50, 100});
    plan.screenKeys = random.pick(std::vector<int>{0, 1, 2, 3, 5, 20, 60});
    plan.recipeItems = random.pick(std::vector<int>{0, 1, 4, 12});
    plan.reactionPercent = random.pick(std::vector<int>{0, 0, 1, 10});
    chooseWindows(random, plan);
    chooseStations(random, plan);
    chooseFaults(random, plan);
    chooseWeights(random, plan);
    plan.severalThreads = random.chance(30);
    return plan;
}

} // namespace exchange::soak
