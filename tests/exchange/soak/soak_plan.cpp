#include "exchange/soak/soak_plan.h"

#include "model/register_name.h"

#include <algorithm>
#include <numeric>

namespace exchange::soak {

namespace {

/** Words that a panel may name. */
const std::map<char, int> kDevices = {{'P', 64},  {'M', 256}, {'K', 32},  {'L', 256},
                                      {'F', 256}, {'T', 256}, {'C', 256}, {'D', 10000}};

void chooseWindows(Random &random, Plan &plan)
{
    const int words = random.pick({4, 12, 32, 120});
    for (const auto &[device, there] : kDevices) {
        Window &window = plan.windows[device];
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
    plan.faultKinds = random.pick({0, 1, 2, 3, 4, 6, 11});
    plan.faultPercent = random.pick({1, 5, 10, 20, 35, 50});
    // Up to the first an answer is in time, up to the second the host throws it away.
    plan.longestDelayMs = random.pick({250, 1200, 1200, 3000, 6000});
    plan.quietMs = random.pick({1000, 1000, 1000, 100, 0});
}

void chooseWeights(Random &random, Plan &plan)
{
    constexpr std::array<int, kEvents> kUsual = {20, 20, 12, 4, 10, 12, 1, 10, 1, 3,
                                                 3,  4,  15, 2, 4,  2,  1, 2,  1};
    for (std::size_t i = 0; i < kEvents; ++i) {
        plan.weights[i] = kUsual[i] * random.pick({0, 1, 1, 1, 4});
    }
    // Who went away may come back.
    plan.weight(Event::StationBack) =
        std::max(plan.weight(Event::StationBack), 2 * plan.weight(Event::StationAway));
    plan.weight(Event::Restart) = random.chance(15) ? plan.weight(Event::Restart) : 0;
    plan.eventPercent = random.pick({2, 10, 25, 50, 90});
    if (random.chance(20)) { // a panel that watches: what changes, changes in the PLC
        plan.eventPercent = 50;
        plan.weight(Event::PlcChange) = 100 * std::max(plan.weight(Event::PlcChange), 15);
    }
}

} // namespace

std::string Plan::properties() const
{
    return std::string("7#") + (cacheOnly ? "1" : "0") + "#0#" + std::to_string(maxRetries) + "#" +
           std::to_string(blockWords);
}

bool Plan::isSent(const std::string &name) const
{
    return !cacheOnly && (blockWords > 0 || model::isContact(name));
}

std::string Plan::text() const
{
    const auto with = [](const char *what, long long number) {
        return what + std::to_string(number);
    };
    return with("seed ", static_cast<long long>(seed)) + with(" phase ", phase) +
           with(": stations ", static_cast<long long>(stations.size())) + ", properties " +
           properties() + with(", keys ", screenKeys) + with(", recipe items ", recipeItems) +
           with(", kinds of fault up to ", faultKinds) + with(" at percent ", faultPercent) +
           (severalThreads ? ", several threads" : "");
}

Random phaseRandom(std::uint64_t seed, int phase)
{
    constexpr std::uint64_t kGolden = 0x9E3779B97F4A7C15ULL;
    return Random((seed + 1) * kGolden ^ static_cast<std::uint64_t>(phase) * 0xD1B54A32D192ED03ULL);
}

Plan choosePlan(std::uint64_t seed, int phase, int exchanges)
{
    Random random = phaseRandom(seed, phase);
    Plan plan;
    plan.seed = seed;
    plan.phase = phase;
    plan.exchanges = exchanges;
    plan.cacheOnly = random.chance(3);
    plan.maxRetries = random.pick({3, 3, 3, 0, 1, 2, 5});
    plan.blockWords = random.pick({60, 60, 58, 30, 8, 4, 0});
    plan.smallestValues = random.pick({0, 50, 100});
    plan.screenKeys = random.pick({0, 1, 2, 3, 5, 20, 60});
    plan.recipeItems = random.pick({0, 1, 4, 12});
    plan.reactionPercent = random.pick({0, 0, 1, 10});
    chooseWindows(random, plan);
    chooseStations(random, plan);
    chooseFaults(random, plan);
    chooseWeights(random, plan);
    plan.severalThreads = random.chance(30);
    return plan;
}

} // namespace exchange::soak
