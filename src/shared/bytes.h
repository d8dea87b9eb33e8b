#pragma once

#include <QtCore/QByteArray>

/// Byte, bit and hexadecimal routines for building and decoding frames. Pure; any thread.

/// @return  the value of one hexadecimal character: "0"-"9", "A"-"F" and "a"-"f" as usual, the
///          characters between "9" and "@" 10-15, every other one some number from 0 to 15
int hexDigitValue(unsigned char character);

/// The results of `hexDigitValue` for all characters.
extern const unsigned char kHexDigitValues[256];

/// @param text  characters of an answer
/// @param pos   index of the first of two hexadecimal characters; a missing character counts as
///              the digit 0
/// @return      the value of the two, 0-255
int asc2hex(const QByteArray &text, int pos);

/// @param digits  two hexadecimal characters
/// @return        their value, 0-255, as with `asc2hex`
inline int byteOfDigits(const char *digits)
{
    return kHexDigitValues[static_cast<unsigned char>(digits[0])] << 4 |
           kHexDigitValues[static_cast<unsigned char>(digits[1])];
}

/// @return  the upper-case hexadecimal character
unsigned char hexCharacter(int value);

/// @return  lo + hi * 256
inline int uchar2int16(unsigned char lo, unsigned char hi)
{
    return lo + hi * 256;
}

/// @return  the four bytes as one number, low byte first
inline int uchar2int32(unsigned char b0, unsigned char b1, unsigned char b2, unsigned char b3)
{
    return static_cast<int>(b0 | static_cast<unsigned>(b1) << 8 | static_cast<unsigned>(b2) << 16 |
                            static_cast<unsigned>(b3) << 24);
}

/// @param bit  0-31; any other number leaves `value` unchanged
/// @return     `value` with that bit set if `on` is not 0, else cleared
int _setBitValue(int value, int bit, int on);

/// @param bit  0-31; the result is 0 for any other number
/// @return     1 if that bit of `value` is set, else 0
inline int bitOf(int value, int bit)
{
    if (bit < 0 || bit > 31) {
        return 0;
    }
    return static_cast<int>(static_cast<unsigned>(value) >> bit & 1U);
}
