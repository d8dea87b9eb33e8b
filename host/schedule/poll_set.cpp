#include "host/schedule/poll_set.h"

#include "host/address/address.h"

#include <algorithm>
#include <utility>

namespace cnet {

namespace {

// The driver reads bits with the words that hold them, so its blocks bear the names of words.
bool holds(const AddressRange &range, const Item &item)
{
    const int last = item.start + item.count - 1;
    const int unit = item.reg.isBit() && !item.reg.isContact() ? kBitsPerWord : 1;
    return range.station == item.station && item.start / unit >= range.start &&
           last / unit < range.start + range.count &&
           range.registerName.section(QLatin1Char('_'), 0, 0) == item.reg.letter();
}

} // namespace

PollSet::PollSet(const DriverCore &driver)
    : m_driver(driver)
{}

void PollSet::add(Monitor *monitor)
{
    m_monitors.append(monitor);
    forget();
}

void PollSet::forget()
{
    m_monitors.removeAll(QPointer<Monitor>());
    m_places.clear();
    m_compared.clear();
    m_stations.reset();
}

void PollSet::forEach(const std::function<void(Monitor &)> &tell) const
{
    const QVector<QPointer<Monitor>> monitors = m_monitors;
    for (const QPointer<Monitor> &monitor : monitors) {
        if (monitor) {
            tell(*monitor);
        }
    }
}

const QVector<int> &PollSet::stations() const
{
    if (m_stations) {
        return *m_stations;
    }
    QVector<int> stations;
    forEach([&](const Monitor &monitor) {
        for (const ItemState &state : monitor.items()) {
            if (!stations.contains(state.item.station)) {
                stations.append(state.item.station);
            }
        }
    });
    return m_stations.emplace(stations);
}

bool PollSet::isAt(const Place &place, const Item &item) const
{
    if (!place.monitor || place.item >= place.monitor->items().size() ||
        place.block >= place.monitor->items().at(place.item).blocks.size()) {
        return false;
    }
    const Item now = itemOf(place);
    return now.station == item.station && now.reg.name == item.reg.name &&
           now.start == item.start && now.count == item.count;
}

Item PollSet::itemOf(const Place &place) const
{
    const ItemState &state = place.monitor->items().at(place.item);
    Item item = state.item;
    item.start += state.blocks.at(place.block).block.offset;
    item.count = state.blocks.at(place.block).block.count;
    return item;
}

QList<KEY_ADDRESS> PollSet::keys(const Included &included) const
{
    QList<KEY_ADDRESS> keys;
    for (const QPointer<Monitor> &monitor : m_monitors) {
        for (int i = 0; monitor && i < monitor->items().size(); ++i) {
            const ItemState &state = monitor->items().at(i);
            for (int block = 0; block < state.blocks.size(); ++block) {
                const WatchedBlock &watched = state.blocks.at(block);
                if (!watched.refused && included(state.item.station, watched)) {
                    keys.append(keyOf(itemOf({monitor, i, block})));
                }
            }
        }
    }
    return keys;
}

const QVector<PollSet::Place> &PollSet::placesIn(const AddressRange &range)
{
    const auto known = m_places.constFind(range);
    return known != m_places.cend() ? *known : *m_places.insert(range, findPlaces(range));
}

QVector<PollSet::Place> PollSet::findPlaces(const AddressRange &range) const
{
    QVector<Place> places;
    for (const QPointer<Monitor> &monitor : std::as_const(m_monitors)) {
        for (int i = 0; monitor && i < monitor->items().size(); ++i) {
            for (int block = 0; block < monitor->items().at(i).blocks.size(); ++block) {
                const Place place{monitor, i, block};
                if (holds(range, itemOf(place))) {
                    places.append(place);
                }
            }
        }
    }
    return places;
}

QVector<Item> PollSet::itemsIn(const AddressRange &range, QVector<Place> &places)
{
    QVector<Item> items;
    for (const Place &place : placesIn(range)) {
        if (place.monitor) {
            places.append(place);
            items.append(itemOf(place));
        }
    }
    return items;
}

// Where the driver reported nothing the values are those of before, and only their age is new.
void PollSet::rangeRead(const AddressRange &range, bool changed, const Monitor::Surroundings &now)
{
    bool &compared = m_compared[range];
    const bool compare = changed || !compared;
    compared = true;
    const QVector<Place> &places = placesIn(range);
    for (const Place &place : places) {
        if (place.monitor) {
            place.monitor->blockRead(place.item, place.block,
                                     compare ? m_driver.values(itemOf(place)) : QVector<quint16>(),
                                     now);
        }
    }
}

// Not remembered: one-off reads come in any size.
void PollSet::rangeReadInPart(const AddressRange &range, const Monitor::Surroundings &now)
{
    for (const Place &place : findPlaces(range)) {
        place.monitor->blockRead(place.item, place.block, m_driver.values(itemOf(place)), now);
    }
}

void PollSet::rangeFailed(const AddressRange &range, const Failure &failure,
                          const Monitor::Surroundings &now)
{
    for (const Place &place : placesIn(range)) {
        if (place.monitor) {
            place.monitor->blockFailed(place.item, place.block, failure, now);
        }
    }
}

void PollSet::stationFailed(int station, const Failure &failure, const Monitor::Surroundings &now)
{
    forEach([&](Monitor &monitor) {
        for (int i = 0; i < monitor.items().size(); ++i) {
            if (monitor.items().at(i).item.station != station) {
                continue;
            }
            for (int block = 0; block < monitor.items().at(i).blocks.size(); ++block) {
                if (!monitor.items().at(i).blocks.at(block).refused) {
                    monitor.blockFailed(i, block, failure, now);
                }
            }
        }
    });
}

} // namespace cnet
