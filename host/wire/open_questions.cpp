#include "host/wire/open_questions.h"

#include "host/wire/fence_frame.h"

#include <algorithm>

namespace cnet {

namespace {

// A station that is silent for good is asked again and again. What is older than so many later
// questions was lost.
const int kMostOpen = 200;

} // namespace

void OpenQuestions::asked(int station, const QByteArray &request, const AnswerShape &shape,
                          qint64 nowMs)
{
    Questions &open = of(station);
    if (open.size() >= kMostOpen) {
        open.removeFirst();
    }
    open.append({request, shape, nowMs});
}

// A refusal has one length whatever was asked, so the command is what counts.
bool OpenQuestions::confusable(int station, const QByteArray &request,
                               const AnswerShape &shape) const
{
    return any(station, [&](const OpenQuestion &question) {
        return question.shape.addressee == shape.addressee && question.request != request;
    });
}

std::optional<OpenQuestion> OpenQuestions::settle(int station, const QByteArray &answer)
{
    Questions &open = of(station);
    for (int i = 0; i < open.size(); ++i) {
        if (open.at(i).shape.admits(answer)) {
            return open.takeAt(i);
        }
    }
    return std::nullopt;
}

void OpenQuestions::keep(int station, const QByteArray &request, const AnswerShape &shape)
{
    Questions &kept = m_kept.at(static_cast<quint8>(station));
    if (std::none_of(kept.cbegin(), kept.cend(),
                     [&](const OpenQuestion &question) { return question.request == request; })) {
        kept.append({request, shape, 0});
    }
}

int OpenQuestions::freeFence(int station, const AnswerShape &next,
                             const QByteArray &lastAnswer) const
{
    for (int form = 0; form < kFenceForms; ++form) {
        const FenceFrame fence = fenceFrame(station, form);
        const AnswerShape shape = AnswerShape::toRequest(fence.request, fence.answerLength);
        const bool taken =
            shape == next || shape.admits(lastAnswer) ||
            any(station, [&](const OpenQuestion &question) { return question.shape == shape; });
        if (!taken) {
            return form;
        }
    }
    return 0; // all are open, the oldest for so long that its answer was lost
}

} // namespace cnet
