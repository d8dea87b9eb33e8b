#include "host/monitor/monitor.h"

#include <QPointer>

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace cnet {

namespace {

using Addresses = std::tuple<int, QString, int, int>;

Addresses addressesOf(const Item &item)
{
    return std::make_tuple(item.station, item.reg.name, item.start, item.count);
}

// Items by their addresses; of several with the same ones the first.
std::map<Addresses, int> indexesOf(const QVector<ItemState> &items)
{
    std::map<Addresses, int> indexes;
    for (int i = 0; i < items.size(); ++i) {
        indexes.emplace(addressesOf(items.at(i).item), i);
    }
    return indexes;
}

bool sharesRegister(const Item &left, const Item &right)
{
    return left.station == right.station && left.reg.name == right.reg.name;
}

} // namespace

Monitor::Monitor(int blockWords, QObject *parent)
    : QObject(parent)
    , m_blockWords(blockWords)
{}

void Monitor::setItems(const QVector<Item> &items)
{
    const QVector<ItemState> before = std::exchange(m_items, {});
    const std::map<Addresses, int> indexes = indexesOf(before);
    QMultiHash<int, int> now; // where each of the old ones is
    for (const Item &item : items) {
        const auto kept = indexes.find(addressesOf(item));
        ItemState state;
        if (kept != indexes.cend()) {
            state = before.at(kept->second);
            now.insert(kept->second, static_cast<int>(m_items.size()));
            for (WatchedBlock &block : state.blocks) {
                block.refused = false;
            }
        } else {
            state.values.resize(item.count);
            for (const ItemBlock &block : blocksOf(item, m_blockWords)) {
                state.blocks.append({block, -1, {}, false});
            }
        }
        state.item = item;
        m_items.append(state);
    }
    renumber(now);
    Q_EMIT itemsChanged();
}

// What is not told yet will be, under the numbers that the items have now.
void Monitor::renumber(const QMultiHash<int, int> &now)
{
    for (const ValueChange &change : std::exchange(m_changes, {})) {
        for (const int item : now.values(change.item)) {
            m_changes.append({item, change.offset, change.value, change.atMs});
        }
    }
    for (const int state : std::exchange(m_changedStates, {})) {
        for (const int item : now.values(state)) {
            m_changedStates.append(item);
        }
    }
}

bool Monitor::isComplete() const
{
    const auto wasTried = [](const WatchedBlock &block) {
        return block.lastReadMs >= 0 || !block.failure.isNone();
    };
    return std::all_of(m_items.cbegin(), m_items.cend(), [&](const ItemState &state) {
        return std::all_of(state.blocks.cbegin(), state.blocks.cend(), wasTried);
    });
}

bool Monitor::isGood() const
{
    return std::all_of(m_items.cbegin(), m_items.cend(),
                       [](const ItemState &state) { return state.quality == Quality::Good; });
}

void Monitor::store(int item, int offset, quint16 value, const Surroundings &now)
{
    ItemState &state = m_items[item];
    ItemValue &cell = state.values[offset];
    if (cell.known && cell.value == value) {
        return;
    }
    cell.value = value;
    cell.known = true;
    state.changedAtMs = now.wallMs;
    m_changes.append({item, offset, value, now.wallMs});
}

void Monitor::blockRead(int item, int block, const QVector<quint16> &values,
                        const Surroundings &now)
{
    ItemState &state = m_items[item];
    WatchedBlock &watched = state.blocks[block];
    watched.lastReadMs = now.nowMs;
    watched.failure = Failure();
    watched.refused = false;
    state.readAtMs = now.wallMs;
    for (int i = 0; i < values.size(); ++i) {
        // The driver has a written value at once; the PLC has it when it confirms it.
        if (!state.values.at(watched.block.offset + i).isWaiting()) {
            store(item, watched.block.offset + i, values.at(i), now);
        }
    }
    review(item, now);
}

void Monitor::blockFailed(int item, int block, const Failure &failure, const Surroundings &now)
{
    m_items[item].blocks[block].failure = failure;
    review(item, now);
}

void Monitor::markRefused(int item, int block, int code, const Surroundings &now)
{
    WatchedBlock &watched = m_items[item].blocks[block];
    watched.refused = true;
    watched.failure = Failure();
    watched.failure.kind = Failure::Refused;
    watched.failure.code = code;
    watched.failure.sent = true;
    review(item, now);
}

void Monitor::forgetRefusals(int station)
{
    for (ItemState &state : m_items) {
        for (WatchedBlock &block : state.blocks) {
            block.refused = block.refused && state.item.station != station;
        }
    }
}

void Monitor::forCommon(const Item &written, const std::function<void(int, int, int)> &visit,
                        const Surroundings &now)
{
    for (int i = 0; i < m_items.size(); ++i) {
        const Item item = m_items.at(i).item;
        const int first = std::max(item.start, written.start);
        const int end = std::min(item.start + item.count, written.start + written.count);
        if (first >= end || !sharesRegister(item, written)) {
            continue;
        }
        for (int address = first; address < end; ++address) {
            visit(i, address - item.start, address - written.start);
        }
        m_changedStates.append(i);
        review(i, now);
    }
}

void Monitor::writeBegun(const Item &written, const QVector<quint16> &values,
                         const Surroundings &now)
{
    forCommon(
        written,
        [&](int item, int offset, int at) {
            ItemValue &cell = m_items[item].values[offset];
            ++cell.writes;
            cell.written = values.value(at);
        },
        now);
}

void Monitor::writeEnded(const Item &written, const QVector<quint16> &values,
                         Confirmation confirmation, const Surroundings &now)
{
    forCommon(
        written,
        [&](int item, int offset, int at) {
            ItemValue &cell = m_items[item].values[offset];
            cell.writes = std::max(0, cell.writes - 1);
            if (confirmation == Confirmation::Given) {
                store(item, offset, values.value(at), now);
            }
        },
        now);
}

Quality Monitor::qualityOf(const ItemState &state, const Surroundings &now)
{
    const auto failed = [&](Failure::Kind kind) {
        return std::any_of(
            state.blocks.cbegin(), state.blocks.cend(),
            [kind](const WatchedBlock &block) { return block.failure.kind == kind; });
    };
    if (!now.lineOpen) {
        return Quality::LineDown;
    }
    if (failed(Failure::Refused)) {
        return Quality::Refused;
    }
    if (failed(Failure::NoAnswer) || failed(Failure::BadAnswer)) {
        return Quality::NoAnswer;
    }
    if (std::any_of(state.values.cbegin(), state.values.cend(),
                    [](const ItemValue &cell) { return cell.isWaiting(); })) {
        return Quality::Waiting;
    }
    const qint64 ageMs = state.ageMs(now.nowMs);
    if (ageMs == ItemState::kNeverRead) {
        return Quality::NeverRead;
    }
    const bool readBefore = now.nowMs - ageMs < now.openSinceMs;
    return ageMs > now.dueMs || readBefore ? Quality::Stale : Quality::Good;
}

void Monitor::review(int item, const Surroundings &now)
{
    ItemState &state = m_items[item];
    const Quality quality = qualityOf(state, now);
    if (quality != state.quality) {
        state.quality = quality;
        m_changedStates.append(item);
    }
}

void Monitor::look(const Surroundings &now)
{
    for (int i = 0; i < m_items.size(); ++i) {
        review(i, now);
    }
}

// Whoever is told may set other items, or delete this object.
void Monitor::tell()
{
    if (m_changes.isEmpty() && m_changedStates.isEmpty()) {
        return;
    }
    QVector<ValueChange> changes = std::exchange(m_changes, {});
    QVector<int> states = std::exchange(m_changedStates, {});
    std::sort(states.begin(), states.end());
    states.erase(std::unique(states.begin(), states.end()), states.end());
    std::stable_sort(
        changes.begin(), changes.end(), [](const ValueChange &left, const ValueChange &right) {
            return left.item != right.item ? left.item < right.item : left.offset < right.offset;
        });
    const QPointer<Monitor> self(this);
    if (!changes.isEmpty()) {
        Q_EMIT valuesChanged(changes);
    }
    for (const int item : std::as_const(states)) {
        if (self && item < m_items.size()) {
            Q_EMIT itemStateChanged(item);
        }
    }
}

} // namespace cnet
