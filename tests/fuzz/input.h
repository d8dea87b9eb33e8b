#pragma once

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace fuzz {

/** Ends the program where a rule does not hold: a fuzzer and a replay both count that as a finding.
 */
inline void require(bool holds, const char *rule)
{
    if (!holds) {
        std::fprintf(stderr, "broken rule: %s\n", rule);
        std::abort();
    }
}

/**
 * The bytes of one input, read from front to back, so that a seed can be written by hand and a
 * piece of one input means the same in another. Beyond the end everything is 0 or empty.
 */
class Input
{
public:
    Input(const uint8_t *data, size_t size)
        : m_data(data)
        , m_size(size)
    {}

    bool atEnd() const { return m_position == m_size; }

    int byte() { return atEnd() ? 0 : m_data[m_position++]; }

    /** One byte, as a number from 0 to `count` - 1. */
    int below(int count) { return byte() % count; }

    /** A number from `low` to `high`, which are less than 65536 apart, from two bytes. */
    int between(int low, int high)
    {
        const int first = byte();
        return low + (first * 256 + byte()) % (high - low + 1);
    }

    /**
     * Any int, with the usual ones in few bytes: below 128 the byte itself, then two bytes for up
     * to 16383, then a table of limits, and five bytes for all others.
     */
    int number()
    {
        static constexpr int kLimits[] = {
            -1,     -2,     -16,     255,        256,     257,         4095,    4096,
            9999,   10000,  65535,   -256,       1024,    65536,       99999,   100000,
            159999, 160000, 1 << 24, INT_MAX,    4080,    512,         513,     -32,
            -10000, -65536, 1 << 28, -(1 << 28), 1 << 30, INT_MAX - 1, INT_MIN, INT_MIN + 1};
        static_assert(sizeof kLimits / sizeof kLimits[0] == 32, "five bits choose one");
        const int first = byte();
        if (first < 128) {
            return first;
        }
        if (first < 192) {
            return (first & 63) * 256 + byte();
        }
        if (first < 224) {
            return kLimits[first & 31];
        }
        uint32_t bits = 0;
        for (int i = 0; i < 4; ++i) {
            bits = bits << 8 | static_cast<uint32_t>(byte());
        }
        return static_cast<int>(bits);
    }

    /** A length byte, and as many bytes, as far as there are any. */
    QByteArray bytes(int most = 255) { return take(std::min(byte(), most)); }

    /** The next `count` bytes, as far as there are any. */
    QByteArray take(int count)
    {
        const size_t taken = std::min(static_cast<size_t>(std::max(count, 0)), m_size - m_position);
        QByteArray result(reinterpret_cast<const char *>(m_data + m_position),
                          static_cast<int>(taken));
        m_position += taken;
        return result;
    }

    QByteArray rest() { return take(static_cast<int>(m_size - m_position)); }

    /** The next line, without its end: for inputs that are text. */
    QByteArray line()
    {
        size_t end = m_position;
        while (end < m_size && m_data[end] != '\n') {
            ++end;
        }
        QByteArray result = take(static_cast<int>(end - m_position));
        byte();
        return result;
    }

private:
    const uint8_t *m_data;
    size_t m_size;
    size_t m_position = 0;
};

} // namespace fuzz

/** What a fuzzer and a replay call with each input. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
