#include "exchange/soak/soak_plant.h"

#include <algorithm>
#include <utility>

namespace exchange::soak {

namespace {

constexpr char kDevices[] = {'P', 'M', 'K', 'L', 'F', 'T', 'C', 'D'};

quint16 wordOf(int value)
{
    return static_cast<quint16>(value);
}

} // namespace

bool goesThroughWords(const Range &range)
{
    return range.reg->isBit() && (range.reg->bitsThroughWord || range.count != 1);
}

int wordsRead(const Range &range)
{
    const int padded = range.count + range.count % kBitsPerWord;
    return (padded + kBitsPerWord - 1) / kBitsPerWord;
}

int bitsInFirstWord(const Range &range)
{
    return std::min(range.count, kBitsPerWord - range.address % kBitsPerWord);
}

void Plant::add(int station, plc::Model model, quint32 seed)
{
    m_host.addStation(station, model).faults.setSeed(seed);
    m_wanted.insert_or_assign(station, plc::Memory(model));
}

void Plant::goAway(int station)
{
    auto node = m_host.line().bus().units().extract(station);
    if (!node.empty()) {
        m_away.insert_or_assign(station, std::move(node));
        m_tally.count(Event::StationAway);
    }
}

void Plant::comeBack(int station, bool empty)
{
    const auto it = m_away.find(station);
    if (it == m_away.end()) {
        return;
    }
    m_host.line().bus().units().insert(std::move(it->second));
    m_away.erase(it);
    if (empty) {
        plc::Memory &memory = m_host.memory(station);
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

bool Plant::isThere(int station) const
{
    return m_host.line().bus().find(station) != nullptr;
}

void Plant::setFaults(int station, const std::vector<plc::Fault> &faults)
{
    plc::Unit *const unit = m_host.line().bus().find(station);
    if (!unit) {
        return;
    }
    unit->faults.clear();
    for (const plc::Fault &fault : faults) {
        unit->faults.add(fault);
    }
}

void Plant::change(const Range &place, int value)
{
    plc::Unit *const unit = m_host.line().bus().find(place.station);
    if (unit && unit->station.memory().setValue(pointOf(place), wordOf(value))) {
        m_wanted.at(place.station).setValue(pointOf(place), wordOf(value));
        m_tally.count(Event::PlcChange);
    }
}

std::optional<int> Plant::held(const Range &range, int offset) const
{
    plc::Unit *const unit = m_host.line().bus().find(range.station);
    const auto value = unit ? unit->station.memory().value(pointOf(range, offset)) : std::nullopt;
    return value ? std::optional<int>(*value) : std::nullopt;
}

void Plant::carryOut(const Range &range, const std::vector<int> &values)
{
    plc::Memory &wanted = m_wanted.at(range.station);
    int offset = 0;
    for (const int value : values) {
        require(wanted.setValue(pointOf(range, offset), wordOf(value)), [&] {
            return QString::fromLatin1("a PLC took a write of %1 that it has not").arg(text(range));
        });
        ++offset;
    }
    compare(range);
}

// Bits beyond the word are not in the frame. What the PLC has changed in the word since it was read
// is undone: the panel cannot know.
void Plant::carryOutBits(const Range &range, const std::vector<int> &values, int wordRead)
{
    plc::Memory &wanted = m_wanted.at(range.station);
    const int word = range.address / kBitsPerWord;
    int now = wordRead;
    int written = 0;
    for (int i = 0; i < bitsInFirstWord(range); ++i) {
        const int mask = 1 << (range.address % kBitsPerWord + i);
        now = values[static_cast<std::size_t>(i)] != 0 ? now | mask : now & ~mask;
        written |= mask;
    }
    if (((wanted.word(range.reg->device, word).value_or(0) ^ wordRead) & ~written) != 0) {
        m_tally.count(Excuse::WordPutBack);
    }
    carryOut({range.station, &wordsOf(*range.reg), word, 1}, {now});
}

void Plant::compareValue(const plc::Memory &memory, int station, const plc::Point &point) const
{
    const auto is = memory.value(point);
    const auto must = m_wanted.at(station).value(point);
    require(is == must, [&] {
        return QString::fromLatin1("station %1 holds %2 instead of %3 in %4 %5")
            .arg(QString::number(station), QString::number(is.value_or(0)),
                 QString::number(must.value_or(0)), QString(QLatin1Char(point.device)),
                 QString::number(point.address));
    });
}

void Plant::compare(const Range &range) const
{
    plc::Unit *const unit = m_host.line().bus().find(range.station);
    for (int offset = -1; unit && offset <= range.count; ++offset) {
        compareValue(unit->station.memory(), range.station, pointOf(range, offset));
    }
}

void Plant::compareWith(const plc::Memory &memory, int station) const
{
    for (const char device : kDevices) {
        plc::Point point;
        point.device = device;
        for (point.address = 0; point.address < memory.wordCount(device); ++point.address) {
            compareValue(memory, station, point);
        }
        point.kind = plc::PointKind::Contact;
        for (point.address = 0; point.address < memory.contactCount(device); ++point.address) {
            compareValue(memory, station, point);
        }
    }
}

void Plant::compareAll() const
{
    for (const auto &[station, unit] : m_host.line().bus().units()) {
        compareWith(unit.station.memory(), station);
    }
}

} // namespace exchange::soak
