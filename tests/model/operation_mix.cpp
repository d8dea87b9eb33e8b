#include "model/operation_mix.h"

#include <map>
#include <sstream>

#include "support/random.h"

namespace model {

namespace {

constexpr int kMostWordsWritten = 512; // of a value area
constexpr int kMostBitsWritten = 512;  // beyond, the values of later pieces lie outside the area
constexpr int kMostWordsRead = 400;

/** A bit set of `Mix::Registers` with one bit, out of those of the mix. */
unsigned anyRegister(Random &random, unsigned registers)
{
    for (;;) {
        const unsigned kind = 1U << random.below(6);
        const bool rare = kind == Mix::Unknown && random.below(8) != 0;
        if ((registers & kind) != 0 && !rare) {
            return kind;
        }
    }
}

std::string nameOf(Random &random, unsigned kind)
{
    switch (kind) {
    case Mix::Words:
        return random.pick({"D_W", "D_W", "M_W", "T_W"});
    case Mix::Bits:
    case Mix::ManyBits:
        return random.pick({"M_bit", "M_bit", "K_bit"});
    case Mix::DataBits:
        return "D_bit";
    case Mix::Contacts:
        return random.pick({"TX", "CX"});
    default:
        return random.pick({"X_W", "Q_bit"});
    }
}

int countOf(Random &random, unsigned kind, bool wide)
{
    if (wide && random.below(6) == 0) {
        return random.below(kind == Mix::Words ? kMostWordsRead : kMostBitsWritten);
    }
    if (kind == Mix::Bits) {
        return 1;
    }
    return random.below(20) == 0 ? 0 : 1 + random.below(random.pick({2, 6, 20}));
}

Range anyRange(Random &random, const Mix &mix, unsigned registers)
{
    const unsigned kind = anyRegister(random, registers);
    Range range;
    range.station = random.pick({1, 1, 1, 1, 2, 31, 257});
    range.name = nameOf(random, kind);
    range.start = random.below(mix.addresses);
    if (kind == Mix::Words && random.below(10) == 0) {
        range.start += 9000; // five digits stay four in a "D_W" request
    }
    if (mix.isNarrow != 0) {
        range.station = 1;
        range.name = kind == Mix::Words ? "M_W" : (kind == Mix::Bits ? "M_bit" : range.name);
    } else if (kind == Mix::ManyBits || kind == Mix::DataBits) {
        range.start *= 1 + 4 * random.below(3);
    }
    range.count = mix.isNarrow != 0 ? 1 + random.below(kind == Mix::Bits ? 1 : 2)
                                    : countOf(random, kind, (mix.registers & Mix::Wide) != 0);
    return range;
}

Operation startOperation(Random &random, const Mix &mix)
{
    Operation start = makeStep(Act::Start, 0, "7#0#0#3#60");
    if (mix.isVaried == 0) {
        return start;
    }
    start.text = std::string(random.pick({"7", "7", "0"})) + "#" +
                 random.pick({"0", "0", "0", "0", "0", "", "x", "1"}) + "#0#" +
                 random.pick({"3", "1", "2", "0", "5", "", "-1"}) + "#" +
                 random.pick({"60", "1", "2", "3", "8", "16", "120", "250", "0", "-1"}) +
                 random.pick({"", "", "#9", "#"});
    if (random.below(6) == 0) {
        start.text = random.pick({"1#1#1#1", "#", "9"});
    }
    start.missing = random.pick({"", "", "", "", "", "", "", "", "", "block", "buffer", "lock"});
    return start;
}

Operation monitorOperation(Random &random, const Mix &mix)
{
    Operation monitor = makeStep(Act::Monitor);
    for (int left = random.below(7); left > 0; --left) {
        const Range range = anyRange(random, mix, mix.registers);
        if (range.name != "X_W") { // has no unit that could be watched
            monitor.ranges.push_back(range);
        }
    }
    return monitor;
}

Operation recipeOperation(Random &random, const Mix &mix)
{
    Operation recipe = makeStep(Act::Recipe);
    for (int left = random.below(6); left > 0; --left) {
        const bool bits = (mix.registers & Mix::ManyBits) != 0 && random.below(10) == 0;
        Range range = anyRange(random, mix, bits ? Mix::ManyBits | Mix::DataBits : Mix::Words);
        range.count %= bits ? 40 : 200;
        recipe.places.push_back(random.below(100));
        recipe.devices.push_back(random.below(5) == 0 ? 0 : 7);
        recipe.ranges.push_back(range);
    }
    return recipe;
}

Operation rangeOperation(Random &random, const Mix &mix, Act act)
{
    Operation operation = makeStep(act, {anyRange(random, mix, mix.registers)});
    Range &range = operation.ranges.front();
    if (act == Act::Write) {
        operation.value = random.below(40);
        if (random.below(60) == 0) { // at the brink of what a value area holds, and beyond
            const bool bytes = range.name.find("_W") == std::string::npos;
            range.count =
                bytes ? 1025 : random.pick({kMostWordsWritten, kMostWordsWritten + 1, -1});
        }
    } else if (act == Act::ReadOnce) {
        operation.value = random.below(4) == 0 ? -1 : 0;
    }
    operation.tag = act == Act::Look ? 0 : random.below(10);
    return operation;
}

Operation answerOperation(Random &random, const Mix &mix)
{
    Operation answer = makeStep(Act::Answer);
    answer.value = random.below(random.below(3) == 0 ? kOtherWord : 3);
    if (random.chance(mix.calmPercent)) {
        answer.value = 1 + (random.below(4) == 0 ? kOtherWord * random.below(6) : 0);
    }
    if (random.chance(mix.badPercent)) {
        answer.fault = static_cast<Fault>(1 + random.below(static_cast<int>(Fault::Noise)));
    }
    return answer;
}

Operation askOperation(Random &random)
{
    if (random.below(8) == 0) {
        return makeStep(Act::Buffer, random.below(200));
    }
    const char *const direction = random.pick({"write", "read"});
    return makeStep(Act::Ask, random.pick({1, 1, 1, 1, 0, 2}), direction);
}

Operation listenOperation(Random &random)
{
    return makeStep(Act::Listen, random.pick({0, 1, 1}));
}

Operation withinOperation(Random &random, const Mix &mix)
{
    const int choice = random.below(12);
    const Act act = choice < 6 ? Act::Write : (choice < 10 ? Act::ReadOnce : Act::Look);
    Operation operation = choice == 0 ? listenOperation(random) : rangeOperation(random, mix, act);
    operation.within = true;
    return operation;
}

void append(Sequence &sequence, Random &random, const Mix &mix, Mix::Step step)
{
    switch (step) {
    case Mix::Start:
        sequence.push_back(startOperation(random, mix));
        break;
    case Mix::Listen:
        sequence.push_back(listenOperation(random));
        break;
    case Mix::Monitor:
        sequence.push_back(monitorOperation(random, mix));
        break;
    case Mix::Recipe:
        sequence.push_back(recipeOperation(random, mix));
        break;
    case Mix::Ask:
        sequence.push_back(askOperation(random));
        break;
    case Mix::Write:
        sequence.push_back(rangeOperation(random, mix, Act::Write));
        break;
    case Mix::Once:
        sequence.push_back(rangeOperation(random, mix, Act::ReadOnce));
        break;
    case Mix::Look:
        sequence.push_back(rangeOperation(random, mix, Act::Look));
        break;
    case Mix::Handshake:
        sequence.push_back(makeStep(Act::Handshake, random.pick({1, 0, 0})));
        break;
    case Mix::Exchange:
        sequence.push_back(makeStep(Act::Send));
        sequence.push_back(answerOperation(random, mix));
        break;
    case Mix::Within:
        sequence.push_back(withinOperation(random, mix));
        break;
    case Mix::Lone:
        sequence.push_back(random.below(2) == 0 ? makeStep(Act::Send)
                                                : answerOperation(random, mix));
        break;
    case Mix::kSteps:
        break;
    }
}

/** A number of each name, as "bad 20, varied 1". */
void readNumbers(const char *text, const std::map<std::string, int *> &numbers)
{
    std::istringstream in(text);
    std::string name;
    while (in >> name) {
        in >> *numbers.at(name);
        in.ignore(); // the comma
    }
}

} // namespace

Mix::Mix(const char *mixName, const char *stepWeights, unsigned someRegisters, const char *manner)
    : name(mixName)
    , registers(someRegisters)
{
    int *const w = weights.data();
    readNumbers(stepWeights, {{"start", w + Start},
                              {"listen", w + Listen},
                              {"monitor", w + Monitor},
                              {"recipe", w + Recipe},
                              {"ask", w + Ask},
                              {"write", w + Write},
                              {"once", w + Once},
                              {"look", w + Look},
                              {"handshake", w + Handshake},
                              {"exchange", w + Exchange},
                              {"within", w + Within},
                              {"lone", w + Lone}});
    readNumbers(manner, {{"bad", &badPercent},
                         {"from", &addresses},
                         {"narrow", &isNarrow},
                         {"varied", &isVaried},
                         {"calm", &calmPercent}});
}

Sequence randomSequence(const Mix &mix, std::uint32_t seed, int steps)
{
    Random random(seed);
    Sequence sequence;
    if (mix.isVaried != 0) {
        append(sequence, random, mix, Mix::Start);
    }
    for (const Mix::Step step : {Mix::Monitor, Mix::Recipe}) {
        if (mix.weights[step] > 0) {
            append(sequence, random, mix, step);
        }
    }
    while (static_cast<int>(sequence.size()) < steps) {
        append(sequence, random, mix, static_cast<Mix::Step>(random.weighed(mix.weights)));
    }
    return sequence;
}

} // namespace model
