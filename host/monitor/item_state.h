#pragma once

#include "host/address/item.h"
#include "host/exchange/failure.h"
#include "host/monitor/quality.h"

#include <QDateTime>
#include <QMetaType>
#include <QVector>

namespace cnet {

/** One address of an item. */
struct ItemValue
{
    quint16 value = 0;   ///< a word, or 0 and 1 for bits and contacts; as last read
    quint16 written = 0; ///< what waits for the PLC
    int writes = 0;      ///< that are on their way; `written` is the last one's
    bool known = false;  ///< it was read, or the PLC confirmed that it was written

    bool isWaiting() const { return writes > 0; }
    /** True when there is something to show. */
    bool isShown() const { return known || isWaiting(); }
    quint16 shown() const { return isWaiting() ? written : value; }
};

/** A block of an item, and the result of its last reading. */
struct WatchedBlock
{
    ItemBlock block;
    qint64 lastReadMs = -1; ///< last good reading on the session's clock; negative: never
    Failure failure;        ///< of its last reading
    bool refused = false;   ///< left out until the items change or the PLC comes back
};

/** An item with all that is known of it. */
struct ItemState
{
    Item item;
    QVector<ItemValue> values;
    QVector<WatchedBlock> blocks;
    Quality quality = Quality::NeverRead;
    qint64 changedAtMs = 0; ///< of any of its values, the first reading included; see wallTime()
    qint64 readAtMs = 0;    ///< of the part that was read last; see wallTime()

    /** Age of its oldest part in milliseconds; kNeverRead: not all of it was read yet. */
    qint64 ageMs(qint64 nowMs) const;
    static constexpr qint64 kNeverRead = -1;

    /** Why it is not good, in words; empty where the quality says all. */
    QString reason() const;
};

/** A value that was read for the first time or has changed since. */
struct ValueChange
{
    int item = 0;
    int offset = 0; ///< of the value in the item
    quint16 value = 0;
    qint64 atMs = 0; ///< see wallTime()
};

/** Local time of milliseconds since 1970 in UTC, with its zone; null for 0, which stands for never.
 */
QDateTime wallTime(qint64 sinceEpochMs);

} // namespace cnet

Q_DECLARE_METATYPE(cnet::ItemState)
Q_DECLARE_METATYPE(cnet::ValueChange)
