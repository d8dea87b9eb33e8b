#include "model/value_model.h"

#include "model/register_name.h"

namespace model {

namespace {

constexpr std::size_t kMostBytes = 1024;
constexpr unsigned kEveryBit = 0xFFFF;

} // namespace

void ValueModel::clearMonitors()
{
    for (auto &[place, unit] : m_units) {
        unit.watched = false;
        unit.watchedBits = 0;
    }
}

void ValueModel::monitor(const Range &range)
{
    const std::string letter = deviceLetter(range.name);
    for (int at = range.start; at < range.start + range.count; ++at) {
        if (isBitName(range.name)) {
            unit(range.station, letter, at / 16).watchedBits |= 1U << (at % 16);
        } else {
            unit(range.station, letter, at).watched = true;
        }
    }
}

void ValueModel::tellWord(const Place &place, unsigned changedBits)
{
    const auto &[station, letter, address] = place;
    const Unit told = m_units[place];
    for (int bit = 0; bit < 16; ++bit) {
        if ((told.watchedBits & changedBits & (1U << bit)) != 0) {
            m_listener(station, letter + "_bit", address * 16 + bit);
        }
    }
    if (told.watched) {
        m_listener(station, letter + "_W", address);
    }
}

void ValueModel::tellContact(const Place &place)
{
    const auto &[station, letter, address] = place;
    if (m_units[place].watched) {
        m_listener(station, letter, address);
    }
}

void ValueModel::storeBit(const Place &place, int bit, bool on, const std::function<int()> &alike)
{
    Unit &changed = m_units[place];
    const unsigned mask = 1U << bit;
    const unsigned before = changed.current();
    const unsigned after = on ? before | mask : before & ~mask;
    if (after != before) {
        tellWord(place, mask);
    }
    changed.written = after; // what the host wrote within is lost
    changed.pending = true;
    if ((changed.once & mask) == 0) {
        changed.once |= mask;
    } else if (alike() == 2) {
        changed.twice |= mask;
    }
}

void ValueModel::store(const Range &range, const Bytes &values, const std::function<int()> &alike)
{
    const std::string letter = deviceLetter(range.name);
    for (int i = 0; i < range.count; ++i) {
        const int at = range.start + i;
        const auto byte = static_cast<std::size_t>(i);
        if (isBitName(range.name)) {
            storeBit({range.station, letter, at / 16}, at % 16, values[byte] == 1, alike);
            continue;
        }
        const Place place{range.station, letter, at};
        Unit &changed = m_units[place];
        const bool word = isWordRegister(range.name);
        const unsigned after =
            word ? values[2 * byte] + 256U * values[2 * byte + 1] : unsigned{values[byte]};
        if (after != changed.current()) {
            word ? tellWord(place, after ^ changed.current()) : tellContact(place);
        }
        changed.written = after;
        changed.pending = true;
    }
}

void ValueModel::settleBit(const Place &place, int bit, bool success)
{
    Unit &settled = m_units[place];
    const unsigned mask = 1U << bit;
    if ((settled.once & mask) == 0) {
        settled.twice &= ~mask;
    } else {
        settled.once &= ~mask;
    }
    if (settled.once == 0 && settled.twice == 0) {
        settled.pending = false;
    }
    if (success) {
        settled.read = (settled.read & ~mask) | (settled.written & mask);
    }
    if (!settled.pending) {
        tellWord(place, kEveryBit);
    }
}

void ValueModel::settle(const Range &range, bool success)
{
    const std::string letter = deviceLetter(range.name);
    for (int at = range.start; at < range.start + range.count; ++at) {
        if (isBitName(range.name)) {
            settleBit({range.station, letter, at / 16}, at % 16, success);
            continue;
        }
        const Place place{range.station, letter, at};
        Unit &settled = m_units[place];
        settled.pending = false;
        if (success) {
            settled.read = settled.written;
        } else if (isWordRegister(range.name)) {
            tellWord(place, settled.read ^ settled.written);
        } else {
            m_listener(range.station, range.name, at);
        }
    }
}

void ValueModel::take(const Frame &frame, const std::string &answer,
                      const std::function<bool()> &writesWait)
{
    const Range &range = frame.item.range;
    const bool contact = isContact(range.name);
    for (int i = 0; i < frame.units; ++i) {
        const Place place{range.station, deviceLetter(range.name), range.start + i};
        Unit &changed = m_units[place];
        const auto at =
            static_cast<std::size_t>(frame.dataPlace) +
            (contact ? 2 * static_cast<std::size_t>(i / 8) : 4 * static_cast<std::size_t>(i));
        const unsigned after = contact ? (pairAt(answer, at) >> (i % 8)) & 1U
                                       : 256U * pairAt(answer, at) + pairAt(answer, at + 2);
        const unsigned before = changed.read;
        changed.read = after;
        if (after == before) {
            continue;
        }
        if (contact) {
            changed.pending = false;
            tellContact(place);
        } else {
            changed.pending = changed.pending && writesWait();
            tellWord(place, after ^ before);
        }
    }
}

std::vector<Range> ValueModel::places() const
{
    std::vector<Range> places;
    for (const auto &[place, unit] : m_units) {
        const auto &[station, letter, address] = place;
        places.push_back({station, isContact(letter) ? letter : letter + "_W", address, 1});
    }
    return places;
}

ValueModel::Unit ValueModel::find(const Range &place) const
{
    const int address = isBitName(place.name) ? place.start / 16 : place.start;
    const auto found = m_units.find({place.station, deviceLetter(place.name), address});
    return found == m_units.end() ? Unit() : found->second;
}

Bytes ValueModel::look(const Range &range)
{
    Bytes bytes;
    const std::string letter = deviceLetter(range.name);
    for (int at = range.start; at < range.start + range.count; ++at) {
        if (isBitName(range.name)) {
            const unsigned word = unit(range.station, letter, at / 16).current();
            bytes.push_back(static_cast<std::uint8_t>((word >> (at % 16)) & 1U));
        } else {
            const unsigned value = unit(range.station, letter, at).current();
            bytes.push_back(static_cast<std::uint8_t>(value & 0xFFU));
            if (isWordRegister(range.name)) {
                bytes.push_back(static_cast<std::uint8_t>(value >> 8U));
            }
        }
        if (bytes.size() >= kMostBytes) {
            break;
        }
    }
    return bytes;
}

} // namespace model
