#include "panel/answer_collector.h"

#include <algorithm>

namespace panel {

namespace {

const int kNoiseKept = 256;

} // namespace

void AnswerCollector::begin(int expectedLength)
{
    *this = AnswerCollector();
    m_expectedLength = std::max(1, expectedLength);
}

bool AnswerCollector::add(const QByteArray &bytes)
{
    for (const char byte : bytes) {
        if (m_complete) {
            ++m_strayBytes;
        } else {
            addByte(byte);
        }
    }
    return m_complete;
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
    // A refusal may be longer than the answer that was expected, as that to a write is.
    const int limit =
        m_answer.at(0) == kNak ? std::max(m_expectedLength, kRefusalLength) : m_expectedLength;
    if (m_bytesMissing > 0) {
        --m_bytesMissing;
    } else if (byte == kEtx) {
        m_bytesMissing = kBlockCheckLength;
    }
    m_complete = m_bytesMissing == 0 || (m_bytesMissing < 0 && m_answer.size() >= limit);
}

void AnswerCollector::dropAsNoise(const QByteArray &bytes)
{
    m_strayBytes += static_cast<int>(bytes.size());
    m_noise.append(bytes.left(kNoiseKept - m_noise.size()));
}

} // namespace panel
