#pragma once

#include "host/driver/driver.h"
#include "host/recording/recording.h"

#include <QVector>

namespace cnet::panel {

/** What the host of a capture has read, as far as its requests tell. */
struct RecordedItems
{
    QVector<Item> items;     ///< addresses that the driver takes; none is within another one
    int blockWords = 1;      ///< of the longest request
    QByteArray mostFrequent; ///< the request that was sent most often
    int rounds = 0;          ///< how often that was
    int intervalMs = 0;      ///< between two of these on average
    int leftOut = 0;         ///< rows of values that the driver does not take, or too many
};

/**
 * Makes items of the read requests of a line. Signs of life are none of them, and where a row of
 * values was always refused, its parts are, if they were asked for.
 */
RecordedItems recordedItems(const RecordedLine &line, Driver &driver);

} // namespace cnet::panel
