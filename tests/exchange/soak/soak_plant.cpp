#include "exchange/soak/soak_plant.h"

#include "exchange/host_loop.h"
#include "model/register_name.h"

#include <algorithm>
#include <utility>

namespace exchange::soak {

namespace {

constexpr int kBitsPerWord = 16;

plc::Point pointAt(const Range &range, int offset)
{
    return pointOf(QString::fromStdString(range.name), range.start + offset);
}

} // namespace

Range unitsOf(const Range &range)
{
    Range units = range;
    if (model::isBitName(range.name)) {
        units.name = model::deviceLetter(range.name) + "_W";
        units.start = range.start / kBitsPerWord;
        units.count = (range.start + range.count - 1) / kBitsPerWord - units.start + 1;
    }
    return units;
}

bool reaches(const Range &range, const Range &place)
{
    const Range units = unitsOf(range);
    const Range unit = unitsOf(place);
    return units.station == unit.station && units.name == unit.name && units.start <= unit.start &&
           unit.start < units.start + units.count;
}

int bitsInFirstWord(const Range &range)
{
    return std::min(range.count, kBitsPerWord - range.start % kBitsPerWord);
}

void Plant::add(int station, plc::Model model, quint32 seed)
{
    m_bus.add(station, model).faults.setSeed(seed);
    m_wanted.insert_or_assign(station, plc::Memory(model));
}

void Plant::goAway(int station)
{
    auto node = m_bus.units().extract(station);
    if (!node.empty()) {
        m_away.insert_or_assign(station, std::move(node));
        m_tally.count("station gone away");
    }
}

void Plant::comeBack(int station, bool empty)
{
    const auto it = m_away.find(station);
    if (it == m_away.end()) {
        return;
    }
    m_bus.units().insert(std::move(it->second));
    m_away.erase(it);
    if (empty) {
        plc::Memory &memory = m_bus.find(station)->station.memory();
        memory = plc::Memory(memory.model());
        m_wanted.insert_or_assign(station, memory);
    }
}

void Plant::allComeBack()
{
    while (!m_away.empty()) {
        comeBack(m_away.begin()->first, false);
    }
}

void Plant::setFaults(int station, const std::vector<plc::Fault> &faults)
{
    if (!isThere(station)) {
        return;
    }
    plc::Faults &there = m_bus.find(station)->faults;
    there.clear();
    for (const plc::Fault &fault : faults) {
        there.add(fault);
    }
}

void Plant::change(const Range &place, int value)
{
    plc::Unit *const unit = m_bus.find(place.station);
    const plc::Point point = pointAt(place, 0);
    if (unit && unit->station.memory().setValue(point, static_cast<quint16>(value))) {
        m_wanted.at(place.station).setValue(point, static_cast<quint16>(value));
        m_tally.count("value changed by a PLC");
    }
}

std::optional<int> Plant::held(const Range &range, int offset) const
{
    plc::Unit *const unit = m_bus.find(range.station);
    const auto value = unit ? unit->station.memory().value(pointAt(range, offset)) : std::nullopt;
    return value ? std::optional<int>(*value) : std::nullopt;
}

// What lies beside the range must be as it was.
void Plant::carryOut(const Range &range, const std::vector<int> &values)
{
    plc::Memory &wanted = m_wanted.at(range.station);
    int offset = 0;
    for (const int value : values) {
        require(wanted.setValue(pointAt(range, offset), static_cast<quint16>(value)),
                "a PLC took a write of places that it has not");
        ++offset;
    }
    const plc::Memory &memory = m_bus.find(range.station)->station.memory();
    for (offset = -1; offset <= range.count; ++offset) {
        compareValue(memory, range.station, pointAt(range, offset));
    }
}

// Bits beyond the word are not in the frame. What the PLC has changed in the word since it was read
// is undone: the panel cannot know.
void Plant::carryOutBits(const Range &range, const std::vector<int> &values, int wordRead)
{
    Range word = unitsOf(range);
    word.count = 1;
    int now = wordRead;
    int written = 0;
    for (int i = 0; i < bitsInFirstWord(range); ++i) {
        const int mask = 1 << (range.start % kBitsPerWord + i);
        now = values[static_cast<std::size_t>(i)] != 0 ? now | mask : now & ~mask;
        written |= mask;
    }
    const int before = m_wanted.at(range.station).value(pointAt(word, 0)).value_or(0);
    if (((before ^ wordRead) & ~written) != 0) {
        m_tally.excuse("word put back as it was read before its bits were written");
    }
    carryOut(word, {now});
}

void Plant::compareValue(const plc::Memory &memory, int station, const plc::Point &point) const
{
    const auto is = memory.value(point);
    const auto must = m_wanted.at(station).value(point);
    require(is == must, [&] {
        return "station " + std::to_string(station) + " holds " + std::to_string(is.value_or(0)) +
               " instead of " + std::to_string(must.value_or(0)) + " in " + point.device + " " +
               std::to_string(point.address);
    });
}

void Plant::compareAll() const
{
    for (auto &[station, unit] : m_bus.units()) {
        const plc::Memory &memory = unit.station.memory();
        for (const char device : {'P', 'M', 'K', 'L', 'F', 'T', 'C', 'D'}) {
            plc::Point point{device, plc::PointKind::Word, 0};
            for (; point.address < memory.wordCount(device); ++point.address) {
                compareValue(memory, station, point);
            }
            point = {device, plc::PointKind::Contact, 0};
            for (; point.address < memory.contactCount(device); ++point.address) {
                compareValue(memory, station, point);
            }
        }
    }
}

} // namespace exchange::soak
