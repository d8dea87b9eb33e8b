#pragma once

#include <cstring>

#include "ls_master_k_cnet/records.h"

/// Cheap copies of requests and frames. Updating a text's reference count costs more than noticing
/// that both texts are the same, and most reads are for the register of the previous one.

/// Assigns `from` to `to`, unless they share the same text already.
inline void shareText(QString &to, const QString &from)
{
    if (from.isEmpty() || to.constData() != from.constData() || to.size() != from.size()) {
        to = from;
    }
}

/// Copies station, register, first address and count between any two records that have them:
/// requests, keys, blocks.
template <class To, class From>
inline void copyPlace(To &to, const From &from)
{
    to.stationNo = from.stationNo;
    shareText(to.regName, from.regName);
    to.startAddr = from.startAddr;
    to.count = from.count;
}

/// Copies a request without its value area.
inline void copyRange(VARIABLE &to, const VARIABLE &from)
{
    to.opKind = from.opKind;
    copyPlace(to, from);
}

/// Copies a frame including its complete areas: a host may look at any byte of them.
inline void copyFrame(FRAME_PRO &to, const FRAME_PRO &from)
{
    std::memcpy(to.sendBuf, from.sendBuf, sizeof to.sendBuf);
    to.sendLen = from.sendLen;
    to.recvLen = from.recvLen;
    to.dataPos = from.dataPos;
    to.unitCount = from.unitCount;
    to.spare = from.spare;
    copyRange(to.var, from.var);
    std::memcpy(to.var.data, from.var.data, sizeof to.var.data);
}
