#include "host/wire/answer_collector.h"

#include "host/wire/characters.h"

#include <algorithm>
#include <cstring>

namespace cnet {

namespace {

const int kNoiseKept = 256;

int bytesBeforeControl(const char *bytes, int count)
{
    int plain = count;
    for (const char control : {kEtx, kAck, kNak}) {
        if (const void *const found =
                std::memchr(bytes, control, static_cast<std::size_t>(plain))) {
            plain = static_cast<int>(static_cast<const char *>(found) - bytes);
        }
    }
    return plain;
}

bool isHeadOfAnswer(char byte)
{
    return byte == kAck || byte == kNak;
}

// Most answers come in one piece, as they were expected.
bool isExpectedAnswer(const QByteArray &bytes, int expectedLength)
{
    const int etxAt = expectedLength - kBlockCheckLength - 1;
    return bytes.size() == expectedLength && etxAt >= 1 && bytes.at(0) == kAck &&
           bytes.at(etxAt) == kEtx && !isHeadOfAnswer(bytes.at(etxAt + 1)) &&
           !isHeadOfAnswer(bytes.at(etxAt + 2)) &&
           bytesBeforeControl(bytes.constData() + 1, etxAt - 1) == etxAt - 1;
}

} // namespace

void AnswerCollector::clear()
{
    *this = AnswerCollector();
}

int AnswerCollector::add(const QByteArray &bytes, int expectedLength)
{
    const int count = static_cast<int>(bytes.size());
    if (m_answer.isEmpty() && !m_complete && isExpectedAnswer(bytes, expectedLength)) {
        m_answer = bytes;
        m_complete = true;
        return count;
    }
    int taken = 0;
    while (taken < count && !m_complete) {
        const int plain = m_answer.isEmpty() || m_bytesMissing >= 0
                              ? 0
                              : bytesBeforeControl(bytes.constData() + taken, count - taken);
        if (plain > 0) {
            m_answer.append(bytes.constData() + taken, plain);
            taken += plain;
        } else {
            addByte(bytes.at(taken));
            ++taken;
        }
        if (m_answer.size() > kLongestFrame) {
            dropAsNoise(m_answer);
            m_answer.clear();
            m_bytesMissing = -1;
            m_complete = false;
        }
    }
    return taken;
}

int AnswerCollector::missing(int expectedLength) const
{
    const bool isAnswer = !m_answer.isEmpty() && m_answer.at(0) == kAck && m_bytesMissing < 0;
    return isAnswer ? std::max(0, expectedLength - static_cast<int>(m_answer.size())) : 0;
}

void AnswerCollector::addByte(char byte)
{
    if (isHeadOfAnswer(byte)) {
        dropAsNoise(m_answer);
        m_answer.clear();
        m_bytesMissing = -1;
    } else if (m_answer.isEmpty()) {
        dropAsNoise(QByteArray(1, byte));
        return;
    }
    m_answer.append(byte);
    if (m_bytesMissing > 0) {
        --m_bytesMissing;
    } else if (byte == kEtx) {
        m_bytesMissing = kBlockCheckLength;
    }
    m_complete = m_bytesMissing == 0;
}

void AnswerCollector::dropAsNoise(const QByteArray &bytes)
{
    m_strayBytes += static_cast<int>(bytes.size());
    m_noise.append(bytes.left(kNoiseKept - m_noise.size()));
}

} // namespace cnet
