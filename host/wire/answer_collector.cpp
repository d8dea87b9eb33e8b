#include "host/wire/answer_collector.h"

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

} // namespace

void AnswerCollector::begin(int expectedLength)
{
    *this = AnswerCollector();
    m_expectedLength = std::max(1, expectedLength);
}

bool AnswerCollector::add(const QByteArray &bytes)
{
    if (m_answer.isEmpty() && !m_complete && isWholeAnswer(bytes)) {
        m_answer = bytes;
        m_complete = true;
        return true;
    }
    const char *next = bytes.cbegin();
    while (next != bytes.cend() && !m_complete) {
        const int plain = plainBytes(next, static_cast<int>(bytes.cend() - next));
        if (plain > 0) {
            m_answer.append(next, plain);
            m_complete = m_answer.size() >= longestAnswer();
            next += plain;
        } else {
            addByte(*next);
            ++next;
        }
    }
    m_strayBytes += static_cast<int>(bytes.cend() - next);
    return m_complete;
}

// Most answers come in one piece, as they were expected.
bool AnswerCollector::isWholeAnswer(const QByteArray &bytes) const
{
    const int etxAt = m_expectedLength - kBlockCheckLength - 1;
    if (bytes.size() != m_expectedLength || etxAt < 1 || bytes.at(0) != kAck ||
        bytes.at(etxAt) != kEtx) {
        return false;
    }
    return bytesBeforeControl(bytes.constData() + 1, etxAt - 1) == etxAt - 1;
}

// Nearly all of an answer lies between its head and ETX and means nothing here.
int AnswerCollector::plainBytes(const char *bytes, int count) const
{
    if (m_answer.isEmpty() || m_bytesMissing >= 0) {
        return 0;
    }
    const int room = longestAnswer() - static_cast<int>(m_answer.size());
    return bytesBeforeControl(bytes, std::max(0, std::min(count, room)));
}

// A refusal may be longer than the answer that was expected, as that to a write is.
int AnswerCollector::longestAnswer() const
{
    return m_answer.at(0) == kNak ? std::max(m_expectedLength, kRefusalLength) : m_expectedLength;
}

void AnswerCollector::addByte(char byte)
{
    const bool isHead = byte == kAck || byte == kNak;
    if (isHead && m_bytesMissing < 0) {
        dropAsNoise(m_answer);
        m_answer.clear();
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
    m_complete = m_bytesMissing == 0 || (m_bytesMissing < 0 && m_answer.size() >= longestAnswer());
}

void AnswerCollector::dropAsNoise(const QByteArray &bytes)
{
    m_strayBytes += static_cast<int>(bytes.size());
    m_noise.append(bytes.left(kNoiseKept - m_noise.size()));
}

} // namespace cnet
