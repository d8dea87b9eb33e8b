#include "exchange/soak/soak_view.h"

#include "support/driver_fixture.h"

#include <array>

namespace exchange::soak {

namespace {

constexpr int kAllBits = 0xFFFF;
constexpr unsigned kStationShift = 26;
constexpr unsigned kDeviceShift = 18;
constexpr quint32 kContactMark = 1U << 17U;

/** Names a unit: station, device, whether it is a contact, and its number. */
quint32 keyOf(const Range &range, int offset)
{
    const int address = range.address + offset;
    const int unit = range.reg->isBit() ? address / kBitsPerWord : address;
    return static_cast<quint32>(range.station) << kStationShift |
           static_cast<quint32>(range.reg->device) << kDeviceShift |
           (range.reg->isContact() ? kContactMark : 0U) | static_cast<quint32>(unit);
}

int bitOf(const Range &range, int offset)
{
    return (range.address + offset) % kBitsPerWord;
}

int withBit(int word, int bit, bool on)
{
    return on ? word | 1 << bit : word & ~(1 << bit);
}

} // namespace

PanelView::Unit &PanelView::unitOf(const Range &range, int offset)
{
    return m_units[keyOf(range, offset)];
}

const PanelView::Unit *PanelView::find(const Range &range, int offset) const
{
    const auto it = m_units.find(keyOf(range, offset));
    return it == m_units.end() ? nullptr : &it->second;
}

void PanelView::watch(const Keys &keys)
{
    for (auto &[key, unit] : m_units) {
        unit.watched = false;
        unit.watchedBits = 0;
    }
    for (const KEY_ADDRESS &key : keys) {
        const Range range = {key.stationNo, registerNamed(key.regName), key.startAddr, key.count};
        for (int i = 0; i < range.count; ++i) {
            Unit &unit = unitOf(range, i);
            if (range.reg->isBit()) {
                unit.watchedBits |= 1 << bitOf(range, i);
            } else {
                unit.watched = true;
            }
        }
    }
}

// Bits first, then the unit itself. The host may write within each call.
void PanelView::report(const Range &range, int offset, const Unit &unit, int bits,
                       Calls &calls) const
{
    static const QString bitSuffix = QLatin1String("_bit");
    static const QString wordSuffix = QLatin1String("_W");
    const int address = range.address + offset;
    if (range.reg->isContact()) {
        if (unit.watched) {
            calls.push({m_device, range.station, range.reg->name, address, unit.current()});
        }
        return;
    }
    const int word = range.reg->isBit() ? address / kBitsPerWord : address;
    const QString letter(QLatin1Char(range.reg->device));
    const int watchedBits = bits & unit.watchedBits;
    for (int bit = 0; bit < kBitsPerWord; ++bit) {
        if ((watchedBits >> bit & 1) != 0) {
            calls.push({m_device, range.station, letter + bitSuffix, word * kBitsPerWord + bit,
                        unit.current() >> bit & 1});
        }
    }
    if (unit.watched) {
        calls.push({m_device, range.station, letter + wordSuffix, word, unit.current()});
    }
}

void PanelView::storeBit(const Range &range, int offset, bool on, Calls &calls)
{
    Unit &unit = unitOf(range, offset);
    const int bit = bitOf(range, offset);
    const int before = unit.current();
    const int after = withBit(before, bit, on);
    if (before != after) {
        report(range, offset, unit, before ^ after, calls);
    }
    unit.written = after; // what the host wrote meanwhile is lost
    unit.pending = true;
    const quint32 first = 1U << static_cast<unsigned>(2 * bit);
    if ((unit.marks & first) == 0) {
        unit.marks |= first;
    } else if (m_jobs.waitingWrites(range) == 2) {
        unit.marks |= first << 1U;
    }
}

void PanelView::store(const Range &range, const std::vector<int> &values, Calls &calls)
{
    for (int i = 0; i < range.count; ++i) {
        const int value = values[static_cast<std::size_t>(i)];
        if (range.reg->isBit()) {
            storeBit(range, i, value != 0, calls);
            continue;
        }
        Unit &unit = unitOf(range, i);
        if (unit.current() != value) {
            report(range, i, unit, unit.current() ^ value, calls);
        }
        unit.written = value;
        unit.pending = true;
    }
}

// One mark of the bit goes, the first one first; the word waits for its last mark.
void PanelView::settleBit(const Range &range, int offset, bool acknowledged, Calls &calls)
{
    Unit &unit = unitOf(range, offset);
    const int bit = bitOf(range, offset);
    const quint32 first = 1U << static_cast<unsigned>(2 * bit);
    unit.marks &= ~((unit.marks & first) != 0 ? first : first << 1U);
    if (unit.marks == 0) {
        unit.pending = false;
    }
    if (acknowledged) {
        unit.confirmed = withBit(unit.confirmed, bit, (unit.written >> bit & 1) != 0);
    }
    if (!unit.pending) {
        report(range, offset, unit, kAllBits, calls);
    }
}

// The host hears of a failure only: a contact's by its address, watched or not.
void PanelView::settleUnit(const Range &range, int offset, bool acknowledged, Calls &calls)
{
    Unit &unit = unitOf(range, offset);
    unit.pending = false;
    if (acknowledged) {
        unit.confirmed = unit.written;
    } else if (range.reg->isContact()) {
        calls.push(
            {m_device, range.station, range.reg->name, range.address + offset, unit.current()});
    } else {
        report(range, offset, unit, unit.written ^ unit.confirmed, calls);
    }
}

void PanelView::settle(const Range &range, const std::vector<int> &values, bool acknowledged,
                       Calls &calls)
{
    for (int i = 0; i < range.count; ++i) {
        const int written = unitOf(range, i).written;
        const int there = range.reg->isBit() ? written >> bitOf(range, i) & 1 : written;
        if (acknowledged && there != values[static_cast<std::size_t>(i)]) {
            m_tally.count(Excuse::NewerSettled);
        }
        if (range.reg->isBit()) {
            settleBit(range, i, acknowledged, calls);
        } else {
            settleUnit(range, i, acknowledged, calls);
        }
    }
}

void PanelView::receive(const Range &range, const std::vector<int> &values, Calls &calls)
{
    for (int i = 0; i < range.count; ++i) {
        Unit &unit = unitOf(range, i);
        const int before = unit.confirmed;
        const int now = values[static_cast<std::size_t>(i)];
        if (before == now) {
            continue;
        }
        unit.confirmed = now;
        if (range.reg->isContact() || m_jobs.writes().empty()) {
            unit.pending = false;
        }
        report(range, i, unit, before ^ now, calls);
    }
}

int PanelView::shown(const Range &range, int offset) const
{
    const Unit *const unit = find(range, offset);
    const int value = unit ? unit->current() : 0;
    return range.reg->isBit() ? value >> bitOf(range, offset) & 1 : value;
}

bool PanelView::isPending(const Range &range, int offset) const
{
    const Unit *const unit = find(range, offset);
    return unit && unit->pending;
}

bool PanelView::isMarked(const Range &range, int offset) const
{
    const Unit *const unit = find(range, offset);
    return unit && unit->marks != 0;
}

void PanelView::compare(const Range &range)
{
    const std::vector<int> seen = valuesOnPanel(range);
    for (int i = 0; i < range.count; ++i) {
        unitOf(range, i);
        const int value = seen[static_cast<std::size_t>(i)];
        require(value == shown(range, i), [&] {
            return QString::fromLatin1("the panel sees %1 instead of %2 at place %3 of %4")
                .arg(QString::number(value), QString::number(shown(range, i)), QString::number(i),
                     text(range));
        });
    }
}

void PanelView::compareAll()
{
    for (const auto &[key, unit] : m_units) {
        const bool isContact = (key & kContactMark) != 0;
        const auto device = static_cast<char>(key >> kDeviceShift & 0xFFU);
        for (const Register &reg : registers()) {
            if (reg.device == device && !reg.isBit() && reg.isContact() == isContact) {
                compare({static_cast<int>(key >> kStationShift), &reg,
                         static_cast<int>(key & (kContactMark - 1)), 1});
            }
        }
    }
}

std::vector<int> valuesOnPanel(const Range &range)
{
    std::array<unsigned char, kValueAreaSize> bytes{};
    QString name = range.reg->name;
    intf_getData(range.station, name, range.address, range.count, bytes.data());
    std::vector<int> values(static_cast<std::size_t>(range.count));
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = range.reg->isWord() ? bytes[2 * i] | bytes[2 * i + 1] << 8 : bytes[i];
    }
    return values;
}

} // namespace exchange::soak
