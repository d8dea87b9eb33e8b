#include "model/operation_mix.h"

#include <array>
#include <random>

namespace model {

namespace {

using Chance = std::mt19937;

int below(Chance &chance, int end)
{
    return static_cast<int>(chance() % static_cast<unsigned>(end));
}

template <std::size_t Size>
int oneOf(Chance &chance, const std::array<int, Size> &values)
{
    return values[static_cast<std::size_t>(below(chance, static_cast<int>(Size)))];
}

template <std::size_t Size>
const char *oneOf(Chance &chance, const std::array<const char *, Size> &values)
{
    return values[static_cast<std::size_t>(below(chance, static_cast<int>(Size)))];
}

constexpr int kMostWordsWritten = 512; // of a value area
constexpr int kMostBitsWritten = 512;  // beyond, the values of later pieces lie outside the area
constexpr int kMostWordsRead = 400;

/** A bit set of `Mix::Registers` with one bit, out of those of the mix. */
unsigned anyRegister(Chance &chance, unsigned registers)
{
    for (;;) {
        const unsigned kind = 1U << below(chance, 6);
        const bool rare = kind == Mix::Unknown && below(chance, 8) != 0;
        if ((registers & kind) != 0 && !rare) {
            return kind;
        }
    }
}

std::string nameOf(Chance &chance, unsigned kind)
{
    switch (kind) {
    case Mix::Words:
        return oneOf<4>(chance, {"D_W", "D_W", "M_W", "T_W"});
    case Mix::Bits:
    case Mix::ManyBits:
        return oneOf<3>(chance, {"M_bit", "M_bit", "K_bit"});
    case Mix::DataBits:
        return "D_bit";
    case Mix::Contacts:
        return oneOf<2>(chance, {"TX", "CX"});
    default:
        return oneOf<2>(chance, {"X_W", "Q_bit"});
    }
}

int countOf(Chance &chance, unsigned kind, bool wide)
{
    if (wide && below(chance, 6) == 0) {
        return below(chance, kind == Mix::Words ? kMostWordsRead : kMostBitsWritten);
    }
    if (kind == Mix::Bits) {
        return 1;
    }
    return below(chance, 20) == 0 ? 0 : 1 + below(chance, oneOf<3>(chance, {2, 6, 20}));
}

Range anyRange(Chance &chance, const Mix &mix, unsigned registers)
{
    const unsigned kind = anyRegister(chance, registers);
    Range range;
    range.station = oneOf<7>(chance, {1, 1, 1, 1, 2, 31, 257});
    range.name = nameOf(chance, kind);
    range.start = below(chance, mix.addresses);
    if (kind == Mix::Words && below(chance, 10) == 0) {
        range.start += 9000; // five digits stay four in a "D_W" request
    }
    if (mix.narrow) {
        range.station = 1;
        range.name = kind == Mix::Words ? "M_W" : (kind == Mix::Bits ? "M_bit" : range.name);
    } else if (kind == Mix::ManyBits || kind == Mix::DataBits) {
        range.start *= 1 + 4 * below(chance, 3);
    }
    range.count = mix.narrow ? 1 + below(chance, kind == Mix::Bits ? 1 : 2)
                             : countOf(chance, kind, (mix.registers & Mix::Wide) != 0);
    return range;
}

Operation startOperation(Chance &chance, const Mix &mix)
{
    Operation operation;
    operation.act = Act::Start;
    if (!mix.varied) {
        operation.text = "7#0#0#3#60";
        return operation;
    }
    operation.text = std::to_string(oneOf<3>(chance, {7, 7, 0})) + "#" +
                     oneOf<8>(chance, {"0", "0", "0", "0", "0", "", "x", "1"}) + "#0#" +
                     oneOf<7>(chance, {"3", "1", "2", "0", "5", "", "-1"}) + "#" +
                     oneOf<10>(chance, {"60", "1", "2", "3", "8", "16", "120", "250", "0", "-1"}) +
                     oneOf<4>(chance, {"", "", "#9", "#"});
    if (below(chance, 6) == 0) {
        operation.text = oneOf<3>(chance, {"1#1#1#1", "#", "9"});
    }
    operation.missing =
        oneOf<12>(chance, {"", "", "", "", "", "", "", "", "", "block", "buffer", "lock"});
    return operation;
}

Operation monitorOperation(Chance &chance, const Mix &mix)
{
    Operation operation;
    operation.act = Act::Monitor;
    const int ranges = below(chance, 7);
    for (int i = 0; i < ranges; ++i) {
        const Range range = anyRange(chance, mix, mix.registers);
        if (range.name != "X_W") { // has no unit that could be watched
            operation.ranges.push_back(range);
        }
    }
    return operation;
}

Operation recipeOperation(Chance &chance, const Mix &mix)
{
    Operation operation;
    operation.act = Act::Recipe;
    const int items = below(chance, 6);
    for (int i = 0; i < items; ++i) {
        const bool bits = (mix.registers & Mix::ManyBits) != 0 && below(chance, 10) == 0;
        Range range = anyRange(chance, mix, bits ? Mix::ManyBits | Mix::DataBits : Mix::Words);
        range.count %= bits ? 40 : 200;
        operation.places.push_back(below(chance, 100));
        operation.devices.push_back(below(chance, 5) == 0 ? 0 : 7);
        operation.ranges.push_back(range);
    }
    return operation;
}

Operation rangeOperation(Chance &chance, const Mix &mix, Act act)
{
    Operation operation;
    operation.act = act;
    operation.ranges = {anyRange(chance, mix, mix.registers)};
    int &count = operation.ranges.front().count;
    if (act == Act::Write) {
        operation.value = below(chance, 40);
        if (below(chance, 60) == 0) { // at the brink of what a value area holds, and beyond
            const bool bytes = operation.ranges.front().name.find("_W") == std::string::npos;
            count = bytes ? 1025 : oneOf<3>(chance, {kMostWordsWritten, kMostWordsWritten + 1, -1});
        }
    } else if (act == Act::ReadOnce) {
        operation.value = below(chance, 4) == 0 ? -1 : 0;
    }
    operation.tag = act == Act::Look ? 0 : below(chance, 10);
    return operation;
}

Operation answerOperation(Chance &chance, const Mix &mix)
{
    Operation operation;
    operation.act = Act::Answer;
    operation.value = below(chance, 3) == 0 ? below(chance, kOtherWord) : below(chance, 3);
    if (mix.calmPercent > 0 && below(chance, 100) < mix.calmPercent) {
        operation.value = 1 + (below(chance, 4) == 0 ? kOtherWord * below(chance, 6) : 0);
    }
    if (below(chance, 100) < mix.badPercent) {
        operation.fault = static_cast<Fault>(1 + below(chance, static_cast<int>(Fault::Noise)));
    }
    return operation;
}

Operation switchOperation(Chance &chance, Act act)
{
    Operation operation;
    operation.act = act;
    if (act == Act::Ask) {
        if (below(chance, 8) == 0) {
            operation.act = Act::Buffer;
            operation.value = below(chance, 200);
            return operation;
        }
        operation.text = oneOf<2>(chance, {"write", "read"});
        operation.value = oneOf<6>(chance, {1, 1, 1, 1, 0, 2});
    } else if (act == Act::Handshake) {
        operation.value = below(chance, 3) == 0 ? 1 : 0;
    } else {
        operation.value = below(chance, 3) == 0 ? 0 : 1;
    }
    return operation;
}

Operation withinOperation(Chance &chance, const Mix &mix)
{
    const int choice = below(chance, 12);
    Operation operation =
        choice == 0
            ? switchOperation(chance, Act::Listen)
            : rangeOperation(chance, mix,
                             choice < 6 ? Act::Write : (choice < 10 ? Act::ReadOnce : Act::Look));
    operation.within = true;
    return operation;
}

/** Appends what the chosen weight stands for. */
void append(Sequence &sequence, Chance &chance, const Mix &mix, int choice)
{
    switch (choice) {
    case 0:
        sequence.push_back(startOperation(chance, mix));
        break;
    case 2:
        sequence.push_back(monitorOperation(chance, mix));
        break;
    case 3:
        sequence.push_back(recipeOperation(chance, mix));
        break;
    case 5:
        sequence.push_back(rangeOperation(chance, mix, Act::Write));
        break;
    case 6:
        sequence.push_back(rangeOperation(chance, mix, Act::ReadOnce));
        break;
    case 7:
        sequence.push_back(rangeOperation(chance, mix, Act::Look));
        break;
    case 9:
        sequence.push_back(Operation());
        sequence.push_back(answerOperation(chance, mix));
        break;
    case 10:
        sequence.push_back(withinOperation(chance, mix));
        break;
    case 11:
        sequence.push_back(below(chance, 2) == 0 ? Operation() : answerOperation(chance, mix));
        break;
    default:
        sequence.push_back(switchOperation(
            chance, choice == 1 ? Act::Listen : (choice == 4 ? Act::Ask : Act::Handshake)));
        break;
    }
}

} // namespace

Sequence randomSequence(const Mix &mix, std::uint32_t seed, int steps)
{
    Chance chance(seed);
    Sequence sequence;
    if (mix.varied) {
        sequence.push_back(startOperation(chance, mix));
    }
    const Mix::Weights &w = mix.weights;
    const std::array<int, 12> weights = {w.start,     w.listen,   w.monitor, w.recipe,
                                         w.ask,       w.write,    w.once,    w.look,
                                         w.handshake, w.exchange, w.within,  w.lone};
    int total = 0;
    for (const int weight : weights) {
        total += weight;
    }
    if (w.monitor > 0) {
        sequence.push_back(monitorOperation(chance, mix));
    }
    if (w.recipe > 0) {
        sequence.push_back(recipeOperation(chance, mix));
    }
    while (static_cast<int>(sequence.size()) < steps) {
        int left = below(chance, total);
        int choice = 0;
        while (left >= weights[static_cast<std::size_t>(choice)]) {
            left -= weights[static_cast<std::size_t>(choice)];
            ++choice;
        }
        append(sequence, chance, mix, choice);
    }
    return sequence;
}

} // namespace model
