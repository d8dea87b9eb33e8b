#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

/// The last request and good answer of one cyclic block. A panel polls the same blocks for years,
/// and nearly every answer says that nothing has changed: comparing its characters tells.
struct BlockMemory
{
    enum { kLongestRequest = 24 };

    int stationNo; ///< the block, copied from `Protocol::cyclicReads`, where entries are 1 KB apart
    int startAddr;
    int count;
    QString regName;
    bool standsAlone;  ///< no other cyclic block overlaps it: only its own answers, one-off reads
                       ///< and writes change its units
    bool hasAnswer;    ///< `BlockMemories::answers` has the characters of a good answer
    int requestLength; ///< bytes of `request`; 0: not sent yet
    int answerLength;  ///< bytes of a good answer to it
    int firstRecord;   ///< index in the data area of its first unit when an answer was stored
    int answerPlace;   ///< index of its first character in `BlockMemories::answers`
    unsigned char request[kLongestRequest];
    quint64 valuesStamp; ///< `Protocol::valuesStamp` when the answer was stored
    QString description; ///< text for the request with an answer of that length
};

/// The memories of all cyclic blocks in their order, with the answers in one piece: a panel with
/// many blocks walks through them over and over, and the processor can prefetch.
struct BlockMemories
{
    QVector<BlockMemory> blocks; ///< one for each of `Protocol::cyclicReads`, or none
    QByteArray answers;
};
