#include "host/wire/answer_shape.h"

#include "host/wire/characters.h"

#include <cstring>

namespace cnet {

namespace {

// Behind the head character.
const int kAddresseePosition = 1;
const int kAddresseeLength = 2 + 1 + 2;

// 0 for a frame that is too short to name anybody.
quint64 addresseeOf(const QByteArray &frame)
{
    quint64 packed = 0;
    if (frame.size() > kAddresseePosition + kAddresseeLength) {
        std::memcpy(&packed, frame.constData() + kAddresseePosition, kAddresseeLength);
    }
    return packed;
}

} // namespace

AnswerShape AnswerShape::toRequest(const QByteArray &request, int answerLength)
{
    return {addresseeOf(request), answerLength};
}

bool AnswerShape::admits(const QByteArray &answer) const
{
    if (addressee == 0 || addresseeOf(answer) != addressee) {
        return false;
    }
    return answer.at(0) == kNak ? answer.size() == kRefusalLength : answer.size() == length;
}

int stationOf(const QByteArray &frame)
{
    bool ok = false;
    const int station = frame.mid(kAddresseePosition, 2).toInt(&ok, 16);
    return ok ? station : -1;
}

} // namespace cnet
