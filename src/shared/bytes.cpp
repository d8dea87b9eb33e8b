#include "shared/bytes.h"

const unsigned char kHexDigitValues[256] = {
    0, 0,  0,  0,  0,  0,  0,  0, 0, 0, 0,  0,  0,  0,  0,  0,  // 00
    0, 0,  0,  0,  0,  0,  0,  0, 0, 0, 0,  0,  0,  0,  0,  0,  // 10
    0, 0,  0,  0,  0,  0,  0,  0, 0, 0, 0,  0,  0,  0,  0,  0,  // 20
    0, 1,  2,  3,  4,  5,  6,  7, 8, 9, 10, 11, 12, 13, 14, 15, // 30 "0"-"9" and the rest
    0, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // 40 "A"-"F" are 10-15
    9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // 50
    9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // 60 "a"-"f" as well
    9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // 70
    9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // 80
    9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // 90
    9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // A0
    9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // B0
    9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // C0
    9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // D0
    9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // E0
    9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3,  4,  5,  6,  7,  8,  // F0
};

int hexDigitValue(unsigned char character)
{
    return kHexDigitValues[character];
}

int asc2hex(const QByteArray &text, int pos)
{
    const int size = static_cast<int>(text.size());
    if (pos < 0 || pos >= size) {
        return 0;
    }
    const int high = hexDigitValue(static_cast<unsigned char>(text.at(pos)));
    const int low =
        pos + 1 < size ? hexDigitValue(static_cast<unsigned char>(text.at(pos + 1))) : 0;
    return high * 16 + low;
}

unsigned char hexCharacter(int value)
{
    return static_cast<unsigned char>("0123456789ABCDEF"[value & 0x0F]);
}

int _setBitValue(int value, int bit, int on)
{
    if (bit < 0 || bit > 31) {
        return value;
    }
    const unsigned mask = 1U << bit;
    const unsigned bits = static_cast<unsigned>(value);
    return static_cast<int>(on != 0 ? bits | mask : bits & ~mask);
}
