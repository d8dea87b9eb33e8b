#pragma once

#include <QString>

/** What a gateway that runs says of itself. */
struct Standing
{
    int sinks = 0;
    qint64 waitingBatches = 0; ///< of all sinks
    int losingSinks = 0;       ///< from which bounds of the ledger took something
    bool isLineOpen = false;   ///< of any line
    qint64 ageMs = 0;          ///< how long ago that was so
};

/** @param folder of its state. @return without sinks where nobody answers */
Standing standingIn(const QString &folder);
