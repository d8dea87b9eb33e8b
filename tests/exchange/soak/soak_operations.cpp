#include "exchange/soak/soak_operations.h"

#include <algorithm>

namespace exchange::soak {

namespace {

constexpr std::size_t kRemembered = 12;
constexpr int kMostWordsOfAWrite = 150;
// The last is more than can wait.
const std::vector<int> kFloods = {5, 15, 15, 40, 40, 40, 100, 100, 700};

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
    const auto items = drawRecipe(m_random, m_plan);
    if (!items.isEmpty()) {
        m_bench.setRecipe(items);
        for (int i = 0; i < 50; ++i) {
            changeRecipeValues();
        }
    }
    for (const StationPlan &station : m_plan.stations) {
        m_bench.plant().setFaults(station.number, drawFaults(m_random, m_plan));
    }
    m_bench.show(drawScreen(m_random, m_plan));
}

void Operations::maybe()
{
    if (m_random.chance(m_plan.operationPercent)) {
        run(drawOperation(m_random, m_plan));
    }
}

void Operations::run(Operation operation)
{
    switch (operation) {
    case Operation::FloodWrites:
        flood();
        break;
    case Operation::ReadOnce:
        readOnce();
        break;
    case Operation::FloodReadings:
        for (int left = m_random.pick(kFloods); left > 0; --left) {
            readOnce();
        }
        break;
    case Operation::RecipeWrite:
        request(Recipe::Write);
        break;
    case Operation::RecipeRead:
        request(Recipe::Read);
        break;
    case Operation::RecipeValues:
        changeRecipeValues();
        break;
    case Operation::PlcChange:
        changePlc();
        break;
    case Operation::StationAway:
        stationAway();
        break;
    case Operation::StationBack:
        stationBack();
        break;
    case Operation::NewFaults:
        newFaults();
        break;
    case Operation::NewScreen:
        if (!m_exchanger.isInFlight()) { // a screen changes while the exchange is idle
            m_bench.tally().count(Event::NewScreen);
            m_bench.show(drawScreen(m_random, m_plan));
        }
        break;
    case Operation::StrayAnswer:
        m_exchanger.takeStray(m_random.chance(50) ? QByteArray("\x06"
                                                               "01wSB\x03"
                                                               "F6")
                                                  : QByteArray());
        break;
    case Operation::Restart:
        m_exchanger.forget();
        m_bench.restart();
        break;
    default:
        write(operation);
        break;
    }
}

Range Operations::severalBits()
{
    Range range = drawRange(m_random, m_plan, drawRegister(m_random, plc::PointKind::Bit), 1);
    if (m_random.chance(20)) {
        range.address -= range.address % kBitsPerWord;
        range.count = kBitsPerWord;
    } else {
        const int left = kBitsPerWord - range.address % kBitsPerWord;
        range.count = m_random.between(1, std::min(8, left));
    }
    return range;
}

Range Operations::acrossWords()
{
    Range range = drawRange(m_random, m_plan, drawRegister(m_random, plc::PointKind::Bit), 24);
    range.count = std::max(range.count, 2);
    // Two bits from the last one of a register on would not be in it.
    range.address -= range.address % kBitsPerWord == 15 ? 1 : 0;
    return range;
}

void Operations::write(Operation operation)
{
    switch (operation) {
    case Operation::WriteWords: {
        const int most = m_random.chance(5) ? kMostWordsOfAWrite : 8;
        const Register &reg = drawRegister(m_random, plc::PointKind::Word);
        writeRange(drawRange(m_random, m_plan, reg, most));
        break;
    }
    case Operation::WriteSeveralBits:
        writeRange(severalBits());
        break;
    case Operation::WriteAcrossWords:
        writeRange(acrossWords());
        break;
    case Operation::WriteContacts: {
        const Register &reg = drawRegister(m_random, plc::PointKind::Contact);
        writeRange(drawRange(m_random, m_plan, reg, 6));
        break;
    }
    case Operation::WriteAgain:
        if (!m_lately.empty()) {
            const int place = m_random.below(static_cast<int>(m_lately.size()));
            writeRange(m_lately[static_cast<std::size_t>(place)]);
        }
        break;
    default:
        writeRange(drawRange(m_random, m_plan, drawRegister(m_random, plc::PointKind::Bit), 1));
        break;
    }
}

std::vector<int> Operations::valuesFor(const Range &range)
{
    std::vector<int> values(static_cast<std::size_t>(range.count));
    for (int &value : values) {
        value = range.reg->isWord() ? drawValue(m_random, m_plan) : m_random.below(2);
    }
    return values;
}

std::optional<Job> Operations::reaction()
{
    if (!m_random.chance(m_plan.reactionPercent)) {
        return std::nullopt;
    }
    const auto kind = m_random.pick(std::vector<plc::PointKind>{
        plc::PointKind::Word, plc::PointKind::Bit, plc::PointKind::Contact});
    const Range range = drawRange(m_random, m_plan, drawRegister(m_random, kind), 4);
    const bool reads = kind == plc::PointKind::Word && m_random.chance(30);
    return Job{range, reads ? std::vector<int>() : valuesFor(range)};
}

void Operations::writeRange(const Range &range)
{
    m_bench.write(range, valuesFor(range));
    m_lately.push_back(range);
    if (m_lately.size() > kRemembered) {
        m_lately.pop_front();
    }
}

void Operations::flood()
{
    static const std::vector<Operation> kinds = {Operation::WriteWords, Operation::WriteBit,
                                                 Operation::WriteSeveralBits,
                                                 Operation::WriteContacts, Operation::WriteAgain};
    for (int left = m_random.pick(kFloods); left > 0; --left) {
        write(m_random.pick(kinds));
    }
}

void Operations::readOnce()
{
    const int most = m_random.chance(10) ? 200 : 10;
    const Register &reg = drawRegister(m_random, plc::PointKind::Word);
    m_bench.readOnce(drawRange(m_random, m_plan, reg, most));
}

void Operations::request(Recipe direction)
{
    if (!m_bench.jobs().recipe().empty()) {
        m_bench.trace([] { return QString::fromLatin1("recipe requested"); });
        m_bench.host().request(direction);
    }
}

// The buffer belongs to the driver while a transfer runs.
void Operations::changeRecipeValues()
{
    const auto &blocks = m_bench.jobs().recipe();
    if (blocks.empty() || m_bench.isRecipeRequested()) {
        return;
    }
    const RecipeBlock &block = m_random.pick(blocks);
    m_bench.setRecipeWord(block.offset + m_random.below(block.range.count),
                          drawValue(m_random, m_plan));
}

void Operations::changePlc()
{
    const auto kind = m_random.pick(std::vector<plc::PointKind>{
        plc::PointKind::Word, plc::PointKind::Word, plc::PointKind::Bit, plc::PointKind::Contact});
    const Range range = drawRange(m_random, m_plan, drawRegister(m_random, kind), 1);
    const int value =
        kind == plc::PointKind::Word ? drawValue(m_random, m_plan) : m_random.below(2);
    m_bench.trace([&] { return QLatin1String("PLC changes ") + text(range); });
    m_bench.plant().change(range, value);
}

void Operations::stationAway()
{
    const int station = drawStation(m_random, m_plan);
    m_bench.trace([&] { return QString::fromLatin1("station %1 away").arg(station); });
    m_bench.plant().goAway(station);
}

void Operations::stationBack()
{
    const int station = drawStation(m_random, m_plan);
    m_bench.trace([&] { return QString::fromLatin1("station %1 back").arg(station); });
    m_bench.plant().comeBack(station, m_random.chance(20));
}

void Operations::newFaults()
{
    m_bench.plant().setFaults(drawStation(m_random, m_plan), drawFaults(m_random, m_plan));
}

} // namespace exchange::soak
