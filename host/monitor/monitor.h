#pragma once

#include "host/exchange/confirmation.h"
#include "host/monitor/item_state.h"

#include <QMultiHash>
#include <QObject>

#include <functional>

namespace cnet {

/**
 * A list of items that is read again and again. A session reads the items of all its monitors
 * together and none knows of the others. Made by Session::monitor(), and gone when deleted.
 */
class Monitor : public QObject
{
    Q_OBJECT

public:
    /** What the session tells a monitor about itself. */
    struct Surroundings
    {
        qint64 nowMs = 0;  ///< on the session's clock
        qint64 wallMs = 0; ///< the same for people; see wallTime()
        bool lineOpen = true;
        qint64 dueMs = 0;       ///< age at which a value is stale
        qint64 openSinceMs = 0; ///< what was read before is stale: nobody knows what was missed
    };

    /** @param blockWords words of a block read, 1 or more */
    explicit Monitor(int blockWords, QObject *parent = nullptr);

    /**
     * Sets what is watched; the addresses were checked. Items that stay keep their values and their
     * times, whatever number they have now, and no change of them is lost.
     */
    void setItems(const QVector<Item> &items);

    const QVector<ItemState> &items() const { return m_items; }

    /** True when all of every item was read, or refused, or is on a station that does not answer.
     */
    bool isComplete() const;

    /** True when every item is good. */
    bool isGood() const;

    // For the session.

    /** A block was read well. @param values of its addresses */
    void blockRead(int item, int block, const QVector<quint16> &values, const Surroundings &now);
    void blockFailed(int item, int block, const Failure &failure, const Surroundings &now);
    void markRefused(int item, int block, int code, const Surroundings &now);
    /** A station's refusals are forgotten: it may be another PLC now. */
    void forgetRefusals(int station);
    /** Values are on their way to the PLC. */
    void writeBegun(const Item &written, const QVector<quint16> &values, const Surroundings &now);
    void writeEnded(const Item &written, const QVector<quint16> &values, Confirmation confirmation,
                    const Surroundings &now);
    /** Time passed, or the line opened or closed: qualities may differ. */
    void look(const Surroundings &now);
    /** Tells of all changes since the last call. */
    void tell();

Q_SIGNALS:
    /** Values were read for the first time or have changed, in the order of the items. */
    void valuesChanged(const QVector<cnet::ValueChange> &changes);
    /** The quality of an item changed, or which of its values wait. */
    void itemStateChanged(int item);
    /** setItems() was called; for the session. */
    void itemsChanged();

private:
    static Quality qualityOf(const ItemState &state, const Surroundings &now);
    void store(int item, int offset, quint16 value, const Surroundings &now);
    void renumber(const QMultiHash<int, int> &now);
    void review(int item, const Surroundings &now);
    void forCommon(const Item &written, const std::function<void(int, int, int)> &visit,
                   const Surroundings &now);

    int m_blockWords;
    QVector<ItemState> m_items;
    QVector<ValueChange> m_changes;
    QVector<int> m_changedStates;
};

} // namespace cnet
