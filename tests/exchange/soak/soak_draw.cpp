// What is drawn while a phase runs, within the bounds of its plan.

#include "exchange/soak/soak_plan.h"

#include <algorithm>

namespace exchange::soak {

namespace {

using plc::PointKind;

constexpr int kLongestItem = 12;

std::string drawRegister(Random &random, PointKind kind)
{
    switch (kind) {
    case PointKind::Word:
        return random.pick({"D_W", "C_W", "T_W", "K_W", "P_W", "F_W", "L_W", "M_W"});
    case PointKind::Bit:
        return random.pick({"P_bit", "K_bit", "M_bit", "L_bit", "F_bit", "D_bit"});
    default:
        return random.pick({"TX", "CX"});
    }
}

plc::Fault drawFault(Random &random, const Plan &plan)
{
    const auto kind = static_cast<plc::FaultKind>(random.below(plc::kFaultKinds));
    plc::Fault fault = plc::usualFault(kind);
    fault.percent = random.chance(50) ? plan.faultPercent : random.between(1, plan.faultPercent);
    if (random.chance(5)) {
        fault.times = random.between(1, 20);
    }
    switch (kind) {
    case plc::FaultKind::Delay:
        fault.low = random.below(plan.longestDelayMs);
        fault.high = random.between(fault.low, plan.longestDelayMs);
        break;
    case plc::FaultKind::Split:
        fault.low = 0;
        fault.high = random.pick({0, 1, 10});
        break;
    case plc::FaultKind::Oversize:
        fault.low = random.pick({8, 13, 17, 300});
        fault.high = fault.low + random.below(20);
        break;
    case plc::FaultKind::WrongStation:
        fault.low = fault.high = random.between(-1, 31);
        break;
    default:
        break;
    }
    return fault;
}

} // namespace

Range drawRange(Random &random, const Plan &plan, PointKind kind, int most)
{
    Range range;
    range.station = drawStation(random, plan);
    range.name = drawRegister(random, kind);
    const Window &window = plan.windows.at(range.name[0]);
    const int scale = kind == PointKind::Bit ? 16 : 1;
    const int units = window.words * scale;
    const int offset = random.below(units);
    range.start = window.word * scale + offset;
    range.count = random.between(1, std::max(1, std::min(most, units - offset)));
    return range;
}

int drawStation(Random &random, const Plan &plan)
{
    return random.pick(plan.stations).number;
}

int drawValue(Random &random, const Plan &plan)
{
    return random.chance(plan.smallestValues) ? random.pick({0, 1, 255}) : random.below(0x10000);
}

// A frame reads one contact, so a screen asks for them one by one. The words of a key, and those
// that hold its bits, fit one block.
std::vector<Range> drawScreen(Random &random, const Plan &plan)
{
    std::vector<Range> keys;
    for (int i = 0; i < plan.screenKeys; ++i) {
        const auto kind = random.pick(
            {PointKind::Word, PointKind::Word, PointKind::Bit, PointKind::Bit, PointKind::Contact});
        const int most = kind == PointKind::Contact ? 1
                         : kind == PointKind::Word  ? std::min(plan.longestBlock(), 30)
                                                    : 32;
        keys.push_back(drawRange(random, plan, kind, most));
    }
    return keys;
}

Operation drawRecipe(Random &random, const Plan &plan)
{
    Operation recipe = model::makeStep(Act::Recipe);
    const auto items = static_cast<std::size_t>(plan.recipeItems);
    int place = random.below(50);
    while (recipe.ranges.size() < items) {
        // Runs of one register do not touch one another: a register is taken once.
        Range item = drawRange(random, plan, PointKind::Word, 1);
        const bool taken =
            std::any_of(recipe.ranges.begin(), recipe.ranges.end(), [&](const Range &other) {
                return other.station == item.station && other.name == item.name;
            });
        if (taken) {
            break;
        }
        const Window &window = plan.windows.at(item.name[0]);
        const int end = window.word + window.words;
        for (item.start = window.word; item.start < end && recipe.ranges.size() < items;) {
            item.count =
                random.between(1, std::min({end - item.start, plan.longestBlock(), kLongestItem}));
            recipe.ranges.push_back(item);
            recipe.devices.push_back(7);
            recipe.places.push_back(place);
            place += item.count;
            item.start += item.count + (random.chance(50) ? 0 : random.between(1, 3));
        }
        place += random.below(5);
    }
    return recipe;
}

std::vector<plc::Fault> drawFaults(Random &random, const Plan &plan)
{
    std::vector<plc::Fault> faults;
    const int kinds = random.between((plan.faultKinds + 1) / 2, plan.faultKinds);
    faults.reserve(static_cast<std::size_t>(kinds));
    for (int i = 0; i < kinds; ++i) {
        faults.push_back(drawFault(random, plan));
    }
    return faults;
}

} // namespace exchange::soak
