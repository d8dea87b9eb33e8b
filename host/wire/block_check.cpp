#include "host/wire/block_check.h"

#include "host/wire/characters.h"

namespace cnet {

namespace {

const int kShortestAnswer = 1 + 2 + 1 + 2 + 1 + kBlockCheckLength;

char hexDigit(int value)
{
    return "0123456789ABCDEF"[value & 0xF];
}

int sumOf(const char *bytes, int count)
{
    int sum = 0;
    for (int i = 0; i < count; ++i) {
        sum += static_cast<unsigned char>(bytes[i]);
    }
    return sum;
}

} // namespace

QByteArray blockCheck(const QByteArray &frame, int length)
{
    const int sum = sumOf(frame.constData(), length);
    QByteArray text(kBlockCheckLength, hexDigit(sum));
    text[0] = hexDigit(sum >> 4);
    return text;
}

QByteArray completedRequest(const QByteArray &text)
{
    QByteArray frame = text.startsWith(kEnq) ? text : kEnq + text;
    const int tail = static_cast<int>(frame.lastIndexOf(kEot));
    if (tail >= 0 && frame.size() - tail - 1 <= kBlockCheckLength) {
        frame.truncate(tail + 1);
    } else {
        frame += kEot;
    }
    const char command = frame.size() > kCommandPosition ? frame.at(kCommandPosition) : '\0';
    return hasBlockCheck(command) ? frame + blockCheck(frame, static_cast<int>(frame.size()))
                                  : frame;
}

bool isWholeAnswer(const QByteArray &answer)
{
    const int size = static_cast<int>(answer.size());
    const int checked = size - kBlockCheckLength;
    if (size < kShortestAnswer || (answer.at(0) != kAck && answer.at(0) != kNak) ||
        answer.at(checked - 1) != kEtx) {
        return false;
    }
    if (!hasBlockCheck(answer.at(kCommandPosition))) {
        return true;
    }
    const int sum = sumOf(answer.constData(), checked);
    return answer.at(checked) == hexDigit(sum >> 4) && answer.at(checked + 1) == hexDigit(sum);
}

} // namespace cnet
