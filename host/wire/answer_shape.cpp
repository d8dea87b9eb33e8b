#include "host/wire/answer_shape.h"

#include "host/wire/characters.h"

#include <algorithm>
#include <cctype>
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
    const QByteArray digits = frame.mid(kAddresseePosition, 2);
    // A number may have a sign or a blank before it, and these two characters may not.
    const bool names =
        digits.size() == 2 && std::all_of(digits.cbegin(), digits.cend(), [](char byte) {
            return std::isxdigit(static_cast<unsigned char>(byte)) != 0;
        });
    return names ? digits.toInt(nullptr, 16) : -1;
}

} // namespace cnet
