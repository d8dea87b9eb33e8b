#pragma once

#include <QtCore/QString>

/// One storage unit of PLC memory in the driver's cache: a word, a byte or a contact, with its last
/// value from the PLC, the last value written by the panel, and how it is monitored. The word view
/// and the bit view of the same memory share one record.
struct _DATA_
{
    quint8 spareFlag;    ///< always 0
    quint8 writePending; ///< 1 while `writeValue` is not confirmed by the PLC
    int pendingBits;     ///< bit 2i: a write of bit i is queued; bit 2i + 1: a second one behind it
    int monitorFlags;    ///< `MonitorBit`s: the views in which the unit is watched
    int bitMonitorFlags; ///< bit n: bit n of the unit is watched
    int stationNo;       ///< PLC station
    QString regPrefix;   ///< register letter, such as "M" of "M_W" and "M_bit"
    int unitAddr;        ///< number of the word, byte or contact
    unsigned char readValue[4];  ///< last received; as many bytes as the unit has, low byte first
    unsigned char writeValue[4]; ///< last written by the panel, in the same layout
};

/// Bit numbers of `_DATA_::monitorFlags`: the watched values that the unit is part of.
enum MonitorBit {
    kWatchUnit = 0,      ///< the unit itself
    kWatchPairLow = 1,   ///< first of the two units of a value
    kWatchPairHigh = 2,  ///< second of the two; the value's address is one less
    kWatchQuadFirst = 3, ///< first of the four units of a value; 4, 5 and 6 are the others
    kWatchQuadLast = 6
};
