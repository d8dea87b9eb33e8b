#pragma once

#include "exchange/host_loop.h"
#include "exchange/soak/soak_random.h"
#include "exchange/soak/soak_register.h"

#include "plc/fault_kinds.h"
#include "plc/faults.h"
#include "plc/memory.h"

#include <QByteArray>

#include <array>
#include <vector>

namespace exchange::soak {

/** What may happen between two exchanges. */
enum class Operation {
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

constexpr std::size_t kOperations = static_cast<std::size_t>(Operation::Count);

struct StationPlan
{
    int number = 0;
    plc::Model model = plc::Model::Full;
    bool isThere = true; ///< false: a number that nobody on the line has
    quint32 seed = 1;    ///< of its faults
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
    quint64 seed = 0;
    int phase = 0;
    int exchanges = 0;

    int device = 7;
    bool cacheOnly = false;
    int maxRetries = 3;
    int blockWords = 60; ///< 0: nothing is merged, and of the writes only contacts are sent
    int quietMs = 1000;

    std::vector<StationPlan> stations;
    int faultKinds = 0;   ///< at most so many at a station
    int faultPercent = 0; ///< highest chance in percent that one of them fires
    int longestDelayMs = 0;
    int smallestValues = 100; ///< percent of the values written that are 0, 1 or 65535
    int screenKeys = 0;
    int recipeItems = 0;
    int operationPercent = 0; ///< how likely something happens between two exchanges
    int reactionPercent = 0;  ///< how likely the panel writes or reads within a call of the driver
    std::array<int, kOperations> weights{};
    bool severalThreads = false; ///< the panel writes and asks on threads of its own

    const Window &window(char deviceLetter) const;
    Window &window(char deviceLetter);
    QByteArray properties() const;
    bool isSent(const Register &written) const;
    /** Words of the longest block that a key or an item may make. */
    int longestBlock() const;
    /** One line for the eye. */
    QString text() const;

private:
    std::array<Window, 8> m_windows{};
};

Plan choosePlan(quint64 seed, int phase, int exchanges);

/** The chance of a phase, apart from that of its plan. */
Random phaseRandom(quint64 seed, int phase);

/** A range within the windows of the plan. @param most units at the most */
Range drawRange(Random &random, const Plan &plan, const Register &reg, int most);

/** One of the plan's stations, and one of the registers of this kind. */
int drawStation(Random &random, const Plan &plan);
const Register &drawRegister(Random &random, plc::PointKind kind);

int drawValue(Random &random, const Plan &plan);

/** The keys of a screen: words, bits and single contacts. */
Keys drawScreen(Random &random, const Plan &plan);

/** Items of the phase's recipe: runs of touching items with gaps between the runs. */
QVector<_RCP_VAR_PRO> drawRecipe(Random &random, const Plan &plan);

/** Faults for one station. */
std::vector<plc::Fault> drawFaults(Random &random, const Plan &plan);

Operation drawOperation(Random &random, const Plan &plan);

} // namespace exchange::soak
