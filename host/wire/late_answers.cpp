#include "host/wire/late_answers.h"

#include <algorithm>

namespace cnet {

namespace {

// Behind the head character: station (2), command and type (3).
const int kAddresseePosition = 1;
const int kAddresseeLength = 5;

QByteArray addressee(const QByteArray &frame)
{
    return frame.mid(kAddresseePosition, kAddresseeLength);
}

} // namespace

void LateAnswers::missed(const QByteArray &request)
{
    Missed &missed = m_missed[addressee(request)];
    missed.requests.insert(request);
    ++missed.attempts;
}

LateAnswers::Verdict LateAnswers::judge(const QByteArray &request)
{
    if (m_missed.isEmpty()) {
        return {};
    }
    const Missed missed = m_missed.take(addressee(request));
    QSet<QByteArray> others = missed.requests;
    others.remove(request);
    return {others.isEmpty(), missed.attempts};
}

bool belongsTogether(const QByteArray &request, const QByteArray &answer)
{
    const int end = kAddresseePosition + kAddresseeLength;
    return request.size() >= end && answer.size() > end &&
           std::equal(request.cbegin() + kAddresseePosition, request.cbegin() + end,
                      answer.cbegin() + kAddresseePosition);
}

} // namespace cnet
