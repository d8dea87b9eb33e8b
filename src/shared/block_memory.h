#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

/// What went over the line for one cyclic block the last time. A panel polls the same blocks for
/// years, and nearly every answer says that nothing has changed: it is told by its characters.
struct BlockMemory
{
    enum { kLongestRequest = 24 };

    int stationNo; ///< the block, as in `Protocol::cyclicReads`; there it is a kilobyte from the
                   ///< next
    int startAddr;
    int count;
    QString regName;
    bool standsAlone;  ///< no other cyclic block covers one of its units: only its own answers,
                       ///< one-off reads and writes change them
    bool hasAnswer;    ///< the characters of a good answer lie in `BlockMemories::answers`
    int requestLength; ///< bytes of `request`; 0: not sent yet
    int answerLength;  ///< of a good answer to it
    int firstRecord;   ///< index in the data area of its first unit when an answer was stored
    int answerPlace;   ///< of its first character in `BlockMemories::answers`
    unsigned char request[kLongestRequest];
    quint64 valuesStamp; ///< `Protocol::valuesStamp` when the answer was stored
    QString description; ///< of the request with an answer of that length
};

/// The memories of all cyclic blocks in their order, the answers one behind the other: a panel with
/// many blocks goes through them again and again, and the processor fetches what comes next.
struct BlockMemories
{
    QVector<BlockMemory> blocks; ///< one for each of `Protocol::cyclicReads`, or none
    QByteArray answers;
};
