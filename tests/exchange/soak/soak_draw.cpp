// What is drawn while a phase runs, within the bounds of its plan.

#include "exchange/soak/soak_plan.h"

#include <algorithm>

namespace exchange::soak {

namespace {

constexpr int kLongestItem = 12;

std::vector<const Register *> ofKind(plc::PointKind kind)
{
    std::vector<const Register *> list;
    for (const Register &reg : registers()) {
        if (reg.kind == kind) {
            list.push_back(&reg);
        }
    }
    return list;
}

plc::Fault drawFault(Random &random, const Plan &plan, plc::FaultKind kind)
{
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
        fault.high = random.pick(std::vector<int>{0, 1, 10});
        break;
    case plc::FaultKind::Oversize:
        fault.low = random.pick(std::vector<int>{8, 13, 17, 300});
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

Range drawRange(Random &random, const Plan &plan, const Register &reg, int most)
{
    const Window &window = plan.window(reg.device);
    Range range;
    range.station = drawStation(random, plan);
    range.reg = &reg;
    const int scale = reg.isBit() ? kBitsPerWord : 1;
    const int units = window.words * scale;
    const int offset = random.below(units);
    range.address = window.word * scale + offset;
    range.count = random.between(1, std::max(1, std::min(most, units - offset)));
    return range;
}

int drawStation(Random &random, const Plan &plan)
{
    return random.pick(plan.stations).number;
}

const Register &drawRegister(Random &random, plc::PointKind kind)
{
    static const std::vector<const Register *> words = ofKind(plc::PointKind::Word);
    static const std::vector<const Register *> bits = ofKind(plc::PointKind::Bit);
    static const std::vector<const Register *> contacts = ofKind(plc::PointKind::Contact);
    switch (kind) {
    case plc::PointKind::Word:
        return *random.pick(words);
    case plc::PointKind::Bit:
        return *random.pick(bits);
    default:
        return *random.pick(contacts);
    }
}

int drawValue(Random &random, const Plan &plan)
{
    if (random.chance(plan.smallestValues)) {
        return random.pick(std::vector<int>{0, 1, 0xFFFF});
    }
    return random.below(0x10000);
}

Keys drawScreen(Random &random, const Plan &plan)
{
    Keys keys;
    for (int i = 0; i < plan.screenKeys; ++i) {
        const auto kind = random.pick(std::vector<plc::PointKind>{
            plc::PointKind::Word, plc::PointKind::Word, plc::PointKind::Bit, plc::PointKind::Bit,
            plc::PointKind::Contact});
        // A frame reads one contact, so a screen asks for them one by one. The words of a key, and
        // those that hold its bits, fit one block.
        const int most = kind == plc::PointKind::Contact ? 1
                         : kind == plc::PointKind::Word  ? std::min(plan.longestBlock(), 30)
                                                         : 2 * kBitsPerWord;
        const Range range = drawRange(random, plan, drawRegister(random, kind), most);
        keys +=
            key(range.station, range.reg->name.toLatin1().constData(), range.address, range.count);
    }
    return keys;
}

QVector<_RCP_VAR_PRO> drawRecipe(Random &random, const Plan &plan)
{
    QVector<_RCP_VAR_PRO> items;
    int offset = random.below(50);
    while (items.size() < plan.recipeItems) {
        // Runs of one register do not touch one another: a register is taken once.
        const Register &reg = drawRegister(random, plc::PointKind::Word);
        const Window &window = plan.window(reg.device);
        const int station = drawStation(random, plan);
        const bool taken = std::any_of(items.begin(), items.end(), [&](const _RCP_VAR_PRO &item) {
            return item.stationNo == station && item.regName == reg.name;
        });
        if (taken) {
            break;
        }
        int address = window.word;
        while (address < window.word + window.words && items.size() < plan.recipeItems) {
            const int left = window.word + window.words - address;
            const int count =
                random.between(1, std::min({left, plan.longestBlock(), kLongestItem}));
            items += recipeItem(station, reg.name.toLatin1().constData(), address, count, offset);
            offset += count;
            address += count + (random.chance(50) ? 0 : random.between(1, 3));
        }
        offset += random.below(5);
    }
    return items;
}

std::vector<plc::Fault> drawFaults(Random &random, const Plan &plan)
{
    std::vector<plc::Fault> faults;
    const int kinds = random.between((plan.faultKinds + 1) / 2, plan.faultKinds);
    for (int i = 0; i < kinds; ++i) {
        const auto kind = static_cast<plc::FaultKind>(random.below(plc::kFaultKinds));
        faults.push_back(drawFault(random, plan, kind));
    }
    return faults;
}

Operation drawOperation(Random &random, const Plan &plan)
{
    int all = 0;
    for (const int weight : plan.weights) {
        all += weight;
    }
    int left = random.below(all);
    for (std::size_t i = 0; i < kOperations; ++i) {
        left -= plan.weights[i];
        if (left < 0) {
            return static_cast<Operation>(i);
        }
    }
    return Operation::PlcChange;
}

} // namespace exchange::soak
