#pragma once

#include "host/address/address_range.h"
#include "host/driver/driver_core.h"
#include "host/monitor/monitor.h"

#include <QHash>
#include <QPointer>
#include <QVector>

#include <functional>
#include <optional>

namespace cnet {

/**
 * The items of all monitors of a session, and which of them one block read serves. It asks the
 * driver for what monitors are to show, and for nothing that a station refuses or does not answer.
 */
class PollSet
{
public:
    /** A block of one monitor's items. */
    struct Place
    {
        QPointer<Monitor> monitor;
        int item = 0;
        int block = 0;
    };
    using Included = std::function<bool(int station, const WatchedBlock &block)>;

    /** @param driver must outlive this object */
    explicit PollSet(const DriverCore &driver);

    void add(Monitor *monitor);
    /** A monitor is gone, or has other items. */
    void forget();

    /** Of all items, each once. */
    const QVector<int> &stations() const;
    bool isEmpty() const { return stations().isEmpty(); }

    /** What intf_addrMerge needs to have all blocks read that are not refused. */
    QList<KEY_ADDRESS> keys(const Included &included) const;

    /** Items of their own for each block that this range serves, in the order of the places. */
    QVector<Item> itemsIn(const AddressRange &range, QVector<Place> &places);

    /** True when the place still is that of these addresses. */
    bool isAt(const Place &place, const Item &item) const;

    /** A block was read well. @param changed the driver reported changes, or may have missed some
     */
    void rangeRead(const AddressRange &range, bool changed, const Monitor::Surroundings &now);
    /** The same for words that no cyclic read asked for: blocks that lie within. */
    void rangeReadInPart(const AddressRange &range, const Monitor::Surroundings &now);
    void rangeFailed(const AddressRange &range, const Failure &failure,
                     const Monitor::Surroundings &now);
    /** All blocks of a station. */
    void stationFailed(int station, const Failure &failure, const Monitor::Surroundings &now);
    /** The driver's callbacks were not for these values: each is compared when it is read next. */
    void distrustCallbacks() { m_compared.clear(); }

    /** Calls `tell` for every monitor that still is there. */
    void forEach(const std::function<void(Monitor &monitor)> &tell) const;

private:
    const QVector<Place> &placesIn(const AddressRange &range);
    QVector<Place> findPlaces(const AddressRange &range) const;
    Item itemOf(const Place &place) const;

    const DriverCore &m_driver;
    QVector<QPointer<Monitor>> m_monitors;
    mutable std::optional<QVector<int>> m_stations; ///< asked for with every answer
    QHash<AddressRange, QVector<Place>> m_places;
    QHash<AddressRange, bool> m_compared; ///< its values were taken over since the last merge
};

} // namespace cnet
