#pragma once

#include "host/address/register_catalog.h"
#include "host/jobs/block_request.h"

#include <QVector>

namespace cnet {

/** A block of an item that a request reads. */
struct ServedBlock
{
    int item = 0; ///< index in the list that was planned for
    ItemBlock block;
};

/** One request of a plan, and the blocks that it reads. */
struct PlannedRead
{
    Item request; ///< words, or one contact
    QVector<ServedBlock> serves;
};

/** The request that reads one block of an item: its words, those that hold its bits, or a contact.
 */
Item requestFor(const Item &item, const ItemBlock &block, const RegisterCatalog &registers);

/** Whether blocks of several items share a request. */
enum class Merging {
    Together, ///< few requests: neighbours share one, small gaps are read along
    Apart,    ///< each block by itself: a refusal then names its item
};

/**
 * Plans how to read items with few requests. Bits are read with the words that hold them; each
 * contact takes a request of its own.
 *
 * @param items whose addresses were checked
 * @param registers has the word register of every bit register's memory
 * @param blockWords most words of a request, 1 or more
 */
QVector<PlannedRead> planReads(const QVector<Item> &items, const RegisterCatalog &registers,
                               int blockWords, Merging merging);

/** The values of one served block out of those of its request. */
QVector<quint16> valuesOf(const Item &item, const ItemBlock &block, const Item &request,
                          const QVector<quint16> &values);

} // namespace cnet
