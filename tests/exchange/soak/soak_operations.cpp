#include "exchange/soak/soak_operations.h"

#include <algorithm>

namespace exchange::soak {

namespace {

using plc::PointKind;

constexpr std::size_t kRemembered = 12;
constexpr int kMostWordsOfAWrite = 150;
constexpr int kBitsPerWord = 16;

} // namespace

Operations::Operations(Bench &bench, Exchanger &exchanger, Random &random)
    : m_bench(bench)
    , m_exchanger(exchanger)
    , m_random(random)
    , m_plan(bench.plan())
{}

void Operations::begin()
{
    for (int i = 0; i < 50; ++i) {
        changePlc();
    }
    const Operation recipe = drawRecipe(m_random, m_plan);
    if (!recipe.ranges.empty()) {
        m_bench.step(recipe);
        changeRecipeValues();
    }
    for (const StationPlan &station : m_plan.stations) {
        newFaults(station.number);
    }
    m_bench.show(drawScreen(m_random, m_plan));
}

void Operations::maybe()
{
    if (m_random.chance(m_plan.eventPercent)) {
        run(static_cast<Event>(m_random.weighed(m_plan.weights)));
    }
}

void Operations::run(Event event)
{
    switch (event) {
    case Event::FloodWrites:
    case Event::FloodReadings:
        // The last is more than can wait.
        for (int left = m_random.pick({5, 15, 15, 40, 40, 40, 100, 100, 700}); left > 0; --left) {
            event == Event::FloodReadings ? readOnce() : writeAny();
        }
        break;
    case Event::ReadOnce:
        readOnce();
        break;
    case Event::RecipeWrite:
        request("write");
        break;
    case Event::RecipeRead:
        request("read");
        break;
    case Event::RecipeValues:
        changeRecipeValues();
        break;
    case Event::PlcChange:
        changePlc();
        break;
    case Event::StationAway:
    case Event::StationBack:
        moveStation(event == Event::StationBack);
        break;
    case Event::NewFaults:
        newFaults(drawStation(m_random, m_plan));
        break;
    case Event::NewScreen:
        if (!m_exchanger.isInFlight()) { // a screen changes while the exchange is idle
            m_bench.tally().count("new screen");
            m_bench.show(drawScreen(m_random, m_plan));
        }
        break;
    case Event::StrayAnswer:
        m_exchanger.takeStray(m_random.chance(50) ? QByteArray("\x06"
                                                               "01wSB\x03"
                                                               "F6")
                                                  : QByteArray());
        break;
    case Event::Restart:
        m_bench.restart();
        break;
    default:
        write(event);
        break;
    }
}

Range Operations::severalBits()
{
    Range range = drawRange(m_random, m_plan, PointKind::Bit, 1);
    if (m_random.chance(20)) {
        range.start -= range.start % kBitsPerWord;
        range.count = kBitsPerWord;
    } else {
        const int left = kBitsPerWord - range.start % kBitsPerWord;
        range.count = m_random.between(1, std::min(8, left));
    }
    return range;
}

Range Operations::acrossWords()
{
    Range range = drawRange(m_random, m_plan, PointKind::Bit, 24);
    range.count = std::max(range.count, 2);
    // Two bits from the last one of a register on would not be in it.
    range.start -= range.start % kBitsPerWord == 15 ? 1 : 0;
    return range;
}

void Operations::write(Event event)
{
    switch (event) {
    case Event::WriteWords:
        writeRange(drawRange(m_random, m_plan, PointKind::Word,
                             m_random.chance(5) ? kMostWordsOfAWrite : 8));
        break;
    case Event::WriteSeveralBits:
        writeRange(severalBits());
        break;
    case Event::WriteAcrossWords:
        writeRange(acrossWords());
        break;
    case Event::WriteContacts:
        writeRange(drawRange(m_random, m_plan, PointKind::Contact, 6));
        break;
    case Event::WriteAgain:
        if (!m_lately.empty()) {
            const int place = m_random.below(static_cast<int>(m_lately.size()));
            writeRange(Range(m_lately[static_cast<std::size_t>(place)]));
        }
        break;
    default:
        writeRange(drawRange(m_random, m_plan, PointKind::Bit, 1));
        break;
    }
}

void Operations::writeAny()
{
    write(m_random.pick({Event::WriteWords, Event::WriteBit, Event::WriteSeveralBits,
                         Event::WriteContacts, Event::WriteAgain}));
}

void Operations::writeRange(const Range &range)
{
    m_bench.tally().count("write asked for");
    m_bench.step(model::makeStep(Act::Write, {range}, drawValue(m_random, m_plan)));
    m_bench.look(range);
    m_lately.push_back(range);
    if (m_lately.size() > kRemembered) {
        m_lately.pop_front();
    }
}

void Operations::readOnce()
{
    m_bench.tally().count("condition read asked for");
    m_bench.step(model::makeStep(Act::ReadOnce, {drawRange(m_random, m_plan, PointKind::Word,
                                                           m_random.chance(10) ? 200 : 10)}));
}

// Each waits for a call of its own: several may come to stand within one another.
std::vector<Operation> Operations::reaction()
{
    std::vector<Operation> steps;
    if (!m_random.chance(m_plan.reactionPercent)) {
        return steps;
    }
    for (int left = m_random.between(1, 4); left > 0; --left) {
        const auto kind = m_random.pick({PointKind::Word, PointKind::Bit, PointKind::Contact});
        const Range range = drawRange(m_random, m_plan, kind, 4);
        const bool reads = kind == PointKind::Word && m_random.chance(30);
        const Act act = m_random.chance(30) ? Act::Look : reads ? Act::ReadOnce : Act::Write;
        const int value = act == Act::Write ? drawValue(m_random, m_plan) : 0;
        steps.push_back(model::makeStep(act, {range}, value));
        steps.back().within = true;
        m_bench.tally().count("step to be done within a call");
    }
    return steps;
}

void Operations::request(const char *direction)
{
    if (m_bench.model().recipeBlocks() > 0) {
        m_bench.step(model::makeStep(Act::Ask, 1, direction));
    }
}

// The buffer belongs to the driver while a transfer runs.
void Operations::changeRecipeValues()
{
    if (m_bench.model().recipeBlocks() > 0 && !m_bench.isRecipeRequested()) {
        m_bench.step(model::makeStep(Act::Buffer, drawValue(m_random, m_plan)));
    }
}

void Operations::changePlc()
{
    const auto kind =
        m_random.pick({PointKind::Word, PointKind::Word, PointKind::Bit, PointKind::Contact});
    const Range place = drawRange(m_random, m_plan, kind, 1);
    const unsigned value = model::wordOf(drawValue(m_random, m_plan), 0);
    m_bench.trace("PLC changes " + place.name + ' ' + std::to_string(place.start));
    m_bench.plant().change(place, static_cast<int>(kind == PointKind::Word ? value : value & 1U));
}

void Operations::moveStation(bool back)
{
    const int station = drawStation(m_random, m_plan);
    m_bench.trace("station " + std::to_string(station) + (back ? " back" : " away"));
    if (back) {
        m_bench.plant().comeBack(station, m_random.chance(20));
    } else {
        m_bench.plant().goAway(station);
    }
}

void Operations::newFaults(int station)
{
    m_bench.plant().setFaults(station, drawFaults(m_random, m_plan));
}

} // namespace exchange::soak
