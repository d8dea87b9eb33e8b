#pragma once

#include <QtCore/QString>

/// The records that host and driver exchange. Their fields, order and widths are part of the
/// interface: a host may declare them itself, so nothing here may move. They have no constructors;
/// `VARIABLE()` and the like return a record with every plain field 0.

/// Size in bytes of the value area of a request and of a key: 512 words, or 1024 bits or bytes.
enum { kValueAreaSize = 1024 };

/// Size in bytes of the area that holds one request frame.
enum { kSendBufSize = 1024 };

/// One PLC request item: a range of one register, with its value bytes.
///
/// Two items are the same request if `stationNo`, `regName`, `startAddr` and `count` are equal.
struct VARIABLE
{
    int opKind;      ///< tag of the item's creator, 4 for cyclic reads; kept, not interpreted
    int stationNo;   ///< PLC station; its low 8 bits are sent, a MASTER-K answers to 0-31
    QString regName; ///< register name, such as "D_W" or "M_bit"
    int startAddr;   ///< first address: word or contact number; word * 16 + bit for "_bit" names
    int count;       ///< number of units (words, bits or contacts)
    unsigned char data[kValueAreaSize]; ///< values; a word low byte first, a bit one byte, 0 or 1
};

/// One address that the host wants to read, or a range that the driver splits or merges.
struct KEY_ADDRESS
{
    QString keyText;  ///< the host's own; kept unchanged
    int keyA;         ///< the host's own; kept unchanged
    int keyB;         ///< the host's own; in the driver's recipe keys, the item's `bufOffset`
    int stationNo;    ///< PLC station
    QString regName;  ///< register name
    QString addrText; ///< address as text; may be empty; not read by the driver
    int startAddr;    ///< first address, in the numeric form of `VARIABLE::startAddr`
    int bitFlag; ///< -1: bits or contacts, one value byte per unit; anything else: two bytes per
                 ///< unit. Used only to split one-off reads
    int count;   ///< number of units
    unsigned char data[kValueAreaSize]; ///< value bytes
};

/// One request frame, ready to send, with the request that it serves. The host owns the record;
/// `intf_getSendFrame` fills it.
struct FRAME_PRO
{
    unsigned char sendBuf[kSendBufSize]; ///< the frame's bytes, `sendLen` of them to transmit
    int sendLen;   ///< bytes to transmit, 0-1024; 0 for a handshake: send nothing and pass back an
                   ///< empty array. The Cnet link needs no handshake, so the driver makes none
    int recvLen;   ///< exact length in bytes of a good answer
    int dataPos;   ///< index in the answer of its first data character; 0 if it has no data
    int unitCount; ///< units in the answer; 0 for a plain acknowledgement
    int spare;     ///< always 0
    VARIABLE var;  ///< the request that the frame serves
};

/// One recipe item of the host: a range of one register and its place in the recipe buffer.
struct _RCP_VAR_PRO
{
    int deviceNo;    ///< device that the item belongs to; items of other devices are dropped
    int stationNo;   ///< PLC station
    QString regName; ///< register name
    int startAddr;   ///< first address
    int count;       ///< number of units
    int bufOffset;   ///< position of the item's first value in the recipe buffer, in 16-bit words
    int reserved;    ///< kept, not interpreted
};
