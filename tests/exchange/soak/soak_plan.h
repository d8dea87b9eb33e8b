#pragma once

#include "model/operation.h"
#include "plc/faults/fault_kinds.h"
#include "plc/faults/faults.h"
#include "plc/memory/memory.h"
#include "support/random.h"

#include <array>
#include <map>
#include <string>
#include <vector>

namespace exchange::soak {

using model::Act;
using model::Operation;
using model::Range;

/** What may happen between two exchanges. */
enum class Event {
    WriteWords,
    WriteBit,
    WriteSeveralBits, ///< up to eight, or all sixteen, within one word
    WriteAcrossWords, ///< nine or more, or over the end of a word
    WriteContacts,
    WriteAgain, ///< a place that was written just before
    FloodWrites,
    ReadOnce,
    FloodReadings,
    RecipeWrite,
    RecipeRead,
    RecipeValues,
    PlcChange,
    StationAway,
    StationBack,
    NewFaults,
    NewScreen,
    StrayAnswer, ///< bytes come while no frame is out
    Restart,
    Count
};

constexpr std::size_t kEvents = static_cast<std::size_t>(Event::Count);

struct StationPlan
{
    int number = 0;
    plc::Model model = plc::Model::Full;
    bool isThere = true;    ///< false: a number that nobody on the line has
    std::uint32_t seed = 1; ///< of its faults
};

/** Where the values of one device lie that a phase uses: few, so that jobs meet. */
struct Window
{
    int word = 0;
    int words = 1;
};

/** All that a seed chooses for one phase. */
struct Plan
{
    std::uint64_t seed = 0;
    int phase = 0;
    int exchanges = 0;

    bool cacheOnly = false;
    int maxRetries = 3;
    int blockWords = 60; ///< 0: nothing is merged, and of the writes only contacts are sent
    int quietMs = 1000;

    std::vector<StationPlan> stations;
    std::map<char, Window> windows; ///< by device letter
    int faultKinds = 0;             ///< at most so many at a station
    int faultPercent = 0;           ///< highest chance in percent that one of them fires
    int longestDelayMs = 0;
    int smallestValues = 100; ///< percent of the values that are one of three
    int screenKeys = 0;
    int recipeItems = 0;
    int eventPercent = 0;    ///< how likely something happens between two exchanges
    int reactionPercent = 0; ///< how likely the panel does something within the driver's next calls
    std::array<int, kEvents> weights{};
    bool severalThreads = false; ///< the panel writes and asks on threads of its own

    int &weight(Event event) { return weights[static_cast<std::size_t>(event)]; }
    std::string properties() const;
    /** Whether the panel's writes of a register are sent, and not only kept. */
    bool isSent(const std::string &name) const;
    /** Words of the longest block that a key or an item may make. */
    int longestBlock() const { return blockWords > 0 ? blockWords : 60; }
    /** One line for the eye. */
    std::string text() const;
};

Plan choosePlan(std::uint64_t seed, int phase, int exchanges);

/** The chance of a phase, apart from that of its plan. */
Random phaseRandom(std::uint64_t seed, int phase);

/** A range of some register of this kind within the plan's windows. @param most units at the most
 */
Range drawRange(Random &random, const Plan &plan, plc::PointKind kind, int most);

int drawStation(Random &random, const Plan &plan);

/** What a step's values are made of. */
int drawValue(Random &random, const Plan &plan);

/** The keys of a screen: words, bits and single contacts. */
std::vector<Range> drawScreen(Random &random, const Plan &plan);

/** Items of the phase's recipe: runs of touching items with gaps between the runs. */
Operation drawRecipe(Random &random, const Plan &plan);

/** Faults for one station. */
std::vector<plc::Fault> drawFaults(Random &random, const Plan &plan);

} // namespace exchange::soak
