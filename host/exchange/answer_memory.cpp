#include "host/exchange/answer_memory.h"

#include "host/wire/frame_words.h"

namespace cnet {

namespace {

// Far more blocks than a session reads cyclically.
const int kMostAnswers = 4096;

} // namespace

void AnswerMemory::remember(int station, const QByteArray &answer, const QByteArray &request)
{
    Answered &last = m_last.at(index(station));
    if (last.request != request && !last.request.isEmpty()) {
        if (m_answers.size() >= kMostAnswers) {
            m_answers.clear();
        }
        m_answers.insert(last.request, last.answer);
    }
    last = {request, answer};
}

bool AnswerMemory::wouldRepeat(int station, const QByteArray &request,
                               const AnswerShape &shape) const
{
    const Answered &answered = m_last.at(index(station));
    return answered.request != request && shape.admits(answered.answer) &&
           (isWriteRequest(request) || m_answers.value(request) == answered.answer);
}

} // namespace cnet
