#pragma once

#include "host/address/item.h"
#include "host/exchange/failure.h"

#include <QVector>

namespace cnet {

/** One request that a job wants made. */
struct BlockRequest
{
    enum Kind {
        Read,   ///< a row of words, or one contact
        Write,  ///< a row of words, one bit or one contact
        Recipe, ///< the recipe that the job has laid out, all of it
    };

    Kind kind = Read;
    Item item;               ///< what to read or write
    QVector<quint16> values; ///< of Write
    QVector<int> stations;   ///< of Recipe: all that it talks to
};

/** What became of it. */
struct BlockResult
{
    Failure failure;         ///< None: it was done
    QVector<quint16> values; ///< of Read: what the PLC holds
};

} // namespace cnet
