#include "shared/bytes.h"

int hexDigitValue(unsigned char character)
{
    if (character < 0x30 || character == 0x40) {
        return 0;
    }
    return character < 0x40 ? character - 0x30 : (character - 0x37) & 0x0F;
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

int uchar2int16(unsigned char lo, unsigned char hi)
{
    return lo + hi * 256;
}

int uchar2int32(unsigned char b0, unsigned char b1, unsigned char b2, unsigned char b3)
{
    return static_cast<int>(b0 | static_cast<unsigned>(b1) << 8 | static_cast<unsigned>(b2) << 16 |
                            static_cast<unsigned>(b3) << 24);
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

int bitOf(int value, int bit)
{
    if (bit < 0 || bit > 31) {
        return 0;
    }
    return static_cast<int>(static_cast<unsigned>(value) >> bit & 1U);
}
