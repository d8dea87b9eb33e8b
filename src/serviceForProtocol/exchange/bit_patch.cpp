#include "serviceForProtocol/exchange/bit_patch.h"

#include <algorithm>

#include "ls_master_k_cnet/cnet_frame.h"
#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

namespace {

/// A copy of the characters of an answer, to be modified. Out-of-range positions read as 0, and
/// writing to them has no effect.
class Digits
{
public:
    explicit Digits(const QByteArray &answer)
        : m_bytes(answer)
    {}

    int size() const { return static_cast<int>(m_bytes.size()); }

    unsigned char at(int pos) const
    {
        return isInside(pos) ? static_cast<unsigned char>(m_bytes.at(pos)) : 0;
    }

    void set(int pos, int value)
    {
        if (isInside(pos)) {
            m_bytes[pos] = static_cast<char>(value);
        }
    }

private:
    bool isInside(int pos) const { return pos >= 0 && pos < m_bytes.size(); }

    QByteArray m_bytes;
};

} // namespace

// Unlike in `asc2hex`, a digit above "F" keeps its value.
static int nibbleOf(unsigned char character)
{
    if (character < 0x30 || character == 0x40) {
        return 0;
    }
    return character - (character < 0x40 ? 0x30 : 0x37);
}

static void exchange(Digits &digits, int first, int second)
{
    const int kept = nibbleOf(digits.at(first));
    digits.set(first, nibbleOf(digits.at(second)));
    digits.set(second, kept);
}

// Reverses the word's four characters, so that nibble k has bits 4k to 4k + 3. The step is two
// characters: with two or more words the steps overlap, and digits already reversed become 0.
static void reverseNibbles(Digits &digits, int unitCount, int dataPos)
{
    const int steps = std::min(unitCount, digits.size());
    for (int k = 0; k < steps; ++k) {
        const int pos = dataPos + 2 * k;
        exchange(digits, pos, pos + 3);
        exchange(digits, pos + 1, pos + 2);
    }
}

// @param offset     bit of the first unit at which the write starts
// @param digitBits  bits per position of `digits`
static void setBits(Digits &digits, int dataPos, const VARIABLE &var, int offset, int digitBits)
{
    const int bits = std::min<int>(var.count, kValueAreaSize);
    for (int i = std::max(0, -offset); i < bits; ++i) {
        const int bit = offset + i;
        const int pos = dataPos + bit / digitBits;
        digits.set(pos, _setBitValue(digits.at(pos), bit % digitBits, var.data[i]));
    }
}

static unsigned char characterOf(unsigned char nibble)
{
    return static_cast<unsigned char>(nibble + (nibble <= 9 ? 0x30 : 0x37));
}

static void putCharacter(FRAME_PRO &frame, int pos, unsigned char character)
{
    if (pos >= 0 && pos < frame.sendLen) {
        frame.sendBuf[pos] = character;
    }
}

static void patchWords(FRAME_PRO &write, const QByteArray &answer, int unitCount, int dataPos,
                       const VARIABLE &var)
{
    Digits digits(answer);
    reverseNibbles(digits, unitCount, dataPos);
    setBits(digits, dataPos, var, var.startAddr % 16, 4);
    const int words = std::min<int>(unitCount, kSendBufSize / kWordCharacters);
    for (int k = 0; k < words; ++k) {
        for (int j = 0; j < kWordCharacters; ++j) {
            putCharacter(write, write.dataPos + 4 * k + j,
                         characterOf(digits.at(dataPos + 4 * k + 3 - j)));
        }
    }
    const int check =
        computate_check(write.sendBuf, static_cast<unsigned short>(write.sendLen - 2));
    putCharacter(write, write.sendLen - 2, hexCharacter(check >> 4));
    putCharacter(write, write.sendLen - 1, hexCharacter(check));
}

// Registers of 8-bit and 32-bit words have their bytes in ascending order. Their block check is the
// 16-bit sum itself, low byte first.
static void patchBytes(FRAME_PRO &write, const QByteArray &answer, int unitCount, int dataPos,
                       const VARIABLE &var, int wordBits)
{
    const int units = std::max(0, std::min<int>(unitCount, kSendBufSize));
    const int bytes = units * (wordBits / 8);
    QByteArray values;
    for (int i = 0; i < bytes && dataPos + 2 * i < answer.size(); ++i) {
        values.append(static_cast<char>(asc2hex(answer, dataPos + 2 * i)));
    }
    Digits digits(values);
    setBits(digits, 0, var, var.startAddr % wordBits, 8);
    for (int i = 0; i < bytes; ++i) {
        putCharacter(write, write.dataPos + 2 * i, hexCharacter(digits.at(i) >> 4));
        putCharacter(write, write.dataPos + 2 * i + 1, hexCharacter(digits.at(i)));
    }
    const int check =
        computate_check(write.sendBuf, static_cast<unsigned short>(write.sendLen - 2));
    putCharacter(write, write.sendLen - 2, static_cast<unsigned char>(check));
    putCharacter(write, write.sendLen - 1, static_cast<unsigned char>(check >> 8));
}

void patchBitsIntoWrite(const RegisterWidths &widths, const QByteArray &answer, int unitCount,
                        int dataPos, const VARIABLE &var)
{
    if (driver.frames.size() < 2) {
        return;
    }
    FRAME_PRO &write = driver.frames[1];
    if (widths.wordBits == 16) {
        patchWords(write, answer, unitCount, dataPos, var);
    } else if (widths.wordBits == 8 || widths.wordBits == 32) {
        patchBytes(write, answer, unitCount, dataPos, var, widths.wordBits);
    }
}
