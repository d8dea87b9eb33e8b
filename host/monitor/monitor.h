#pragma once

#include "host/address/item.h"
#include "host/exchange/request_range.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QMap>
#include <QPair>
#include <QVector>

#include <functional>

namespace cnet {

/** The part of an item that one block read serves, and how its reading fares. */
struct WatchedPiece
{
    Piece piece;
    qint64 lastReadMs = -1; ///< last good answer on the monitor's clock; negative: never
    bool failed = false;    ///< its last read was given up
};

/** An item with what is known of it. */
struct WatchedItem
{
    Item item;
    QVector<quint16> values; ///< words; 0 or 1 for bits and contacts
    QVector<bool> known;     ///< of each value: it was read at least once
    QVector<WatchedPiece> pieces;
    QDateTime lastChange; ///< of any of its values, the first reading included; null: never

    /** Age of its oldest part in milliseconds; kNeverRead: not all of it was read yet. */
    qint64 ageMs(qint64 nowMs) const;
    bool failed() const;
    /** Every part of it was read at least once. */
    bool everRead() const { return ageMs(0) != kNeverRead; }

    static constexpr qint64 kNeverRead = -1;
};

/** A value that was read for the first time or has changed since. */
struct ValueChange
{
    int item = 0;
    int offset = 0; ///< of the value in the item
    quint16 value = 0;
    QDateTime time;
};

/**
 * The values that the user watches. It learns of changes from the driver's callback and of good
 * readings from the exchange, and knows neither; times are handed in.
 */
class Monitor
{
public:
    /** Reads `count` cached values of the driver. */
    using Reader =
        std::function<QVector<quint16>(int station, const RegisterInfo &reg, int start, int count)>;

    /** @param blockWords words of a block read */
    Monitor(const QVector<Item> &items, int blockWords, Reader reader);

    /** What intf_addrMerge needs to have all items read. */
    QList<KEY_ADDRESS> keys() const;

    /** The driver says that a value changed. */
    void valueChanged(int station, const QString &name, int address, const QDateTime &time);

    /** A block read ended, well or given up. */
    void readEnded(const RequestRange &request, bool good, qint64 nowMs, const QDateTime &time);

    /** What changed since the last call, in the order of the items. */
    QVector<ValueChange> takeChanges();

    const QVector<WatchedItem> &items() const { return m_items; }

    /** True when every item was read and none failed the last time. */
    bool allGood() const;

private:
    void store(int item, int offset, quint16 value, const QDateTime &time);
    void markRead(int item, WatchedPiece &piece, qint64 nowMs, const QDateTime &time);

    QVector<WatchedItem> m_items;
    QHash<QString, QVector<int>> m_itemsByPlace;  ///< by station and register name
    QMap<QPair<int, int>, ValueChange> m_changes; ///< by item and offset
    Reader m_reader;
};

} // namespace cnet
