#include "exchange/answer_finder.h"

#include "plc/wire/wire.h"

#include <algorithm>

namespace exchange {

namespace {

// NAK st(2) command type(2) code(4) ETX check(2)
constexpr int kRefusalLength = 1 + 2 + 1 + 2 + 4 + 1 + plc::kBlockCheckBytes;

} // namespace

AnswerFinder::AnswerFinder(int expectedLength)
    : m_expectedLength(expectedLength)
{}

bool AnswerFinder::add(const QByteArray &bytes)
{
    return std::any_of(bytes.begin(), bytes.end(), [this](char byte) { return add(byte); });
}

bool AnswerFinder::add(char byte)
{
    if (m_answer.isEmpty() && byte != plc::kAck && byte != plc::kNak) {
        return false;
    }
    m_answer += byte;
    if (m_checkBytesMissing >= 0) {
        return --m_checkBytesMissing == 0;
    }
    if (byte == plc::kEtx) {
        m_checkBytesMissing = plc::kBlockCheckBytes;
        return false;
    }
    const int longest =
        m_answer.at(0) == plc::kNak ? std::max(m_expectedLength, kRefusalLength) : m_expectedLength;
    return m_answer.size() >= longest;
}

} // namespace exchange
