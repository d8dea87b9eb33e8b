#pragma once

#include "gateway/store/ledger.h"

#include <QMetaType>
#include <QString>
#include <QVector>

namespace cnet::gateway {

/** How one sink stands. */
struct SinkState
{
    QString name;
    bool isReady = false;
    QString trouble;           ///< why it failed last, in words; empty: it works
    qint64 values = 0;         ///< changes that it was handed, those handed again included
    qint64 droppedValues = 0;  ///< changes that the ledger's bounds took from it, ever
    qint64 waitingBatches = 0; ///< that are not safe there
    qint64 waitingMs = 0;      ///< age of the oldest of these; 0: there is none
};

/** How the ledger and all sinks stand. A copy, for other threads. */
struct RecorderState
{
    LedgerState ledger;
    QString trouble; ///< why the ledger cannot store, in words; empty: it can
    QVector<SinkState> sinks;
    qint64 memoryBytes = 0;         ///< of batches on their way to the ledger
    qint64 memoryDroppedValues = 0; ///< changes that had to go from there, ever
};

} // namespace cnet::gateway

Q_DECLARE_METATYPE(cnet::gateway::RecorderState)
