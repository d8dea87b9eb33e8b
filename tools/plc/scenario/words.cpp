#include "plc/scenario/words.h"

#include <cstring>

namespace plc {

namespace {

constexpr int kWordBits = 16;
constexpr int kDigitBits = 4;
constexpr int kDigits = 8;

} // namespace

quint32 takeDouble(const Memory &memory, int address)
{
    const quint32 low = memory.word('D', address).value_or(0);
    const quint32 high = memory.word('D', address + 1).value_or(0);
    return high << kWordBits | low;
}

void putDouble(Memory &memory, int address, quint32 value)
{
    memory.setWord('D', address, static_cast<quint16>(value));
    memory.setWord('D', address + 1, static_cast<quint16>(value >> kWordBits));
}

quint64 takeQuad(const Memory &memory, int address)
{
    const quint64 high = takeDouble(memory, address + 2);
    return high << 2 * kWordBits | takeDouble(memory, address);
}

void putQuad(Memory &memory, int address, quint64 value)
{
    putDouble(memory, address, static_cast<quint32>(value));
    putDouble(memory, address + 2, static_cast<quint32>(value >> 2 * kWordBits));
}

void putFloat(Memory &memory, int address, float value)
{
    quint32 bits = 0;
    static_assert(sizeof bits == sizeof value, "single precision");
    std::memcpy(&bits, &value, sizeof bits);
    putDouble(memory, address, bits);
}

void putText(Memory &memory, int address, int words, const QByteArray &text)
{
    for (int i = 0; i < words; ++i) {
        const auto at = [&text](int place) {
            return place < text.size() ? static_cast<unsigned char>(text.at(place)) : 0U;
        };
        memory.setWord('D', address + i, static_cast<quint16>(at(2 * i + 1) << 8U | at(2 * i)));
    }
}

quint32 toBcd(quint32 value)
{
    quint32 bcd = 0;
    for (int i = 0; i < kDigits; ++i) {
        bcd |= value % 10 << i * kDigitBits;
        value /= 10;
    }
    return bcd;
}

int fromBcd(quint16 bcd)
{
    int value = 0;
    for (int shift = kWordBits - kDigitBits; shift >= 0; shift -= kDigitBits) {
        const int digit = bcd >> shift & 0xF;
        if (digit > 9) {
            return -1;
        }
        value = value * 10 + digit;
    }
    return value;
}

} // namespace plc
