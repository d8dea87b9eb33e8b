#include "host/monitor/monitor.h"

#include "host/address/address.h"

#include <algorithm>
#include <utility>

namespace cnet {

namespace {

QString placeKey(int station, const QString &name)
{
    return QString::fromLatin1("%1/%2").arg(station).arg(name);
}

// The driver reads bits with the words that hold them, so its blocks bear the names of words.
bool blockHolds(const RequestRange &block, const Item &item, const Piece &piece)
{
    const int first = item.start + piece.offset;
    const int last = first + piece.count - 1;
    const int unit = item.reg.isBit() && !item.reg.isContact() ? kBitsPerWord : 1;
    return block.stationNo == item.station &&
           block.regName.section(QLatin1Char('_'), 0, 0) == item.reg.letter() &&
           first / unit >= block.startAddr && last / unit < block.startAddr + block.count;
}

} // namespace

qint64 WatchedItem::ageMs(qint64 nowMs) const
{
    qint64 oldest = nowMs;
    for (const WatchedPiece &piece : pieces) {
        if (piece.lastReadMs < 0) {
            return kNeverRead;
        }
        oldest = std::min(oldest, piece.lastReadMs);
    }
    return nowMs - oldest;
}

bool WatchedItem::failed() const
{
    return std::any_of(pieces.cbegin(), pieces.cend(),
                       [](const WatchedPiece &piece) { return piece.failed; });
}

Monitor::Monitor(const QVector<Item> &items, int blockWords, Reader reader)
    : m_reader(std::move(reader))
{
    for (const Item &item : items) {
        WatchedItem watched;
        watched.item = item;
        watched.values.fill(0, item.count);
        watched.known.fill(false, item.count);
        for (const Piece &piece : piecesOf(item, blockWords)) {
            watched.pieces.append(WatchedPiece{piece, -1, false});
        }
        m_itemsByPlace[placeKey(item.station, item.reg.name)].append(
            static_cast<int>(m_items.size()));
        m_items.append(watched);
    }
}

QList<KEY_ADDRESS> Monitor::keys() const
{
    QList<KEY_ADDRESS> keys;
    for (const WatchedItem &watched : m_items) {
        for (const WatchedPiece &part : watched.pieces) {
            KEY_ADDRESS key{};
            key.stationNo = watched.item.station;
            key.regName = watched.item.reg.name;
            key.addrText = watched.item.addressText(part.piece.offset);
            key.startAddr = watched.item.start + part.piece.offset;
            key.bitFlag = watched.item.reg.isBit() ? -1 : 0;
            key.count = part.piece.count;
            keys.append(key);
        }
    }
    return keys;
}

void Monitor::store(int item, int offset, quint16 value, const QDateTime &time)
{
    WatchedItem &watched = m_items[item];
    if (watched.known.at(offset) && watched.values.at(offset) == value) {
        return;
    }
    watched.values[offset] = value;
    watched.known[offset] = true;
    watched.lastChange = time;
    m_changes[{item, offset}] = ValueChange{item, offset, value, time};
}

void Monitor::valueChanged(int station, const QString &name, int address, const QDateTime &time)
{
    for (const int index : m_itemsByPlace.value(placeKey(station, name))) {
        const Item item = m_items.at(index).item;
        const int offset = address - item.start;
        if (offset >= 0 && offset < item.count) {
            const QVector<quint16> value = m_reader(item.station, item.reg, address, 1);
            store(index, offset, value.value(0), time);
        }
    }
}

// A value that was 0 all along is never reported as changed, so the first reading is told apart
// here.
void Monitor::markRead(int item, WatchedPiece &piece, qint64 nowMs, const QDateTime &time)
{
    const bool first = piece.lastReadMs < 0;
    piece.lastReadMs = nowMs;
    piece.failed = false;
    if (!first) {
        return;
    }
    const Item asked = m_items.at(item).item;
    const QVector<quint16> values =
        m_reader(asked.station, asked.reg, asked.start + piece.piece.offset, piece.piece.count);
    for (int i = 0; i < piece.piece.count; ++i) {
        store(item, piece.piece.offset + i, values.value(i), time);
    }
}

void Monitor::readEnded(const RequestRange &request, bool good, qint64 nowMs, const QDateTime &time)
{
    for (int i = 0; i < m_items.size(); ++i) {
        for (WatchedPiece &piece : m_items[i].pieces) {
            if (!blockHolds(request, m_items.at(i).item, piece.piece)) {
                continue;
            }
            if (good) {
                markRead(i, piece, nowMs, time);
            } else {
                piece.failed = true;
            }
        }
    }
}

QVector<ValueChange> Monitor::takeChanges()
{
    QVector<ValueChange> changes;
    for (const ValueChange &change : std::as_const(m_changes)) {
        changes.append(change);
    }
    m_changes.clear();
    return changes;
}

bool Monitor::allGood() const
{
    return std::all_of(m_items.cbegin(), m_items.cend(), [](const WatchedItem &watched) {
        return watched.everRead() && !watched.failed();
    });
}

} // namespace cnet
