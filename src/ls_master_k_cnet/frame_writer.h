#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/records.h"

/// Writes one request into the `sendBuf` of a frame, from ENQ to the block check. A request that is
/// too long is truncated: nothing is written past the buffer, and the PLC refuses the frame.
class FrameWriter
{
public:
    /// Starts the frame: ENQ, station, command.
    /// @param command  three characters, such as "rSB"
    FrameWriter(FRAME_PRO &frame, int stationNo, const char *command);

    void text(const char *characters);

    /// The low 8 bits of `value` as two upper-case hexadecimal characters.
    void hexByte(int value);

    /// The device letters of a command table: "%" and the first two characters of `command`.
    void device(const QString &command);

    /// A decimal number, padded with zeros on the left. Only the first `digits` characters of a
    /// longer number are written: the fields of a frame have fixed positions.
    /// @param digits  1-10
    void decimal(int value, int digits);

    /// Ends the frame: EOT and block check. Now `sendLen` is its length.
    void finish();

private:
    enum { kMostDigits = 10 };

    void longDecimal(int value, int digits);
    void put(unsigned char character);

    FRAME_PRO &m_frame;
};
