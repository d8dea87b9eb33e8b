#pragma once

#include <QString>

#include <optional>

namespace cnet {

enum class Parity { None, Even, Odd };

/** Settings of a serial line. */
struct LineSettings
{
    int baud = 38400;
    int dataBits = 8; ///< 7 or 8
    Parity parity = Parity::None;
    int stopBits = 1; ///< 1 or 2

    /** Bits that one character takes, with its start, parity and stop bits. */
    int bitsOfCharacter() const;
    /** Microseconds that one character takes, with its start bit. */
    int characterMicroseconds() const;
    /** "38400,8,NONE,1". */
    QString text() const;
};

/**
 * Reads "BAUD[,DATABITS,PARITY,STOPBITS]"; what is left out from the right is as usual.
 *
 * @param error receives what was expected when the result is empty
 */
std::optional<LineSettings> parseLineSettings(const QString &text, QString &error);

/** Where the PLC is found. */
struct LinkAddress
{
    enum class Kind { Tcp, Serial };

    Kind kind = Kind::Tcp;
    QString host;     ///< of Tcp
    quint16 port = 0; ///< of Tcp
    QString device;   ///< of Serial
    LineSettings
        line; ///< of Serial; of the line behind a TCP port what the time-out is computed from
};

/**
 * Reads "tcp:HOST:PORT" or "serial:DEVICE[,BAUD,DATABITS,PARITY,STOPBITS]". Fields of the
 * serial line may be left out from the right; they have the driver's defaults then.
 *
 * @param error receives one sentence, with what was expected, when the result is empty
 */
std::optional<LinkAddress> parseLinkAddress(const QString &text, QString &error);

} // namespace cnet
