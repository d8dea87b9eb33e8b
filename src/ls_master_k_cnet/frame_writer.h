#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/records.h"

/// Writes one request into the `sendBuf` of a frame, from ENQ to the block check. What would not
/// fit is cut off at the end: the PLC refuses such a frame, and nothing is written beyond the area.
class FrameWriter
{
public:
    /// Opens the frame: ENQ, station, command.
    /// @param command  three characters, such as "rSB"
    FrameWriter(FRAME_PRO &frame, int stationNo, const char *command);

    void text(const char *characters);

    /// Two upper-case hexadecimal characters of the low 8 bits of `value`.
    void hexByte(int value);

    /// The device letters of a command table: "%" and the first two characters of `command`.
    void device(const QString &command);

    /// Decimal digits, filled with zeros on the left. Only the first `digits` characters of a
    /// longer number are written: the places behind it are fixed.
    /// @param digits  1-10
    void decimal(int value, int digits);

    /// Closes the frame: EOT and block check. `sendLen` is its length now.
    void finish();

private:
    enum { kMostDigits = 10 };

    void longDecimal(int value, int digits);
    void put(unsigned char character);

    FRAME_PRO &m_frame;
};
