#pragma once

#include "host/support/fake_link.h"
#include "host/support/frames.h"
#include "host/support/virtual_clock.h"

#include <host/exchange/conversation.h>

namespace cnet {

// Two questions whose answers look alike, and a fence.
inline const QByteArray kFirst = requestFrame("01rSB08%DW0010001");
inline const QByteArray kSecond = requestFrame("01rSB08%DW0020001");
inline const QByteArray kWrite = requestFrame("01wSB08%DW00300010007");
inline const QByteArray kOtherWrite = requestFrame("01wSB08%DW00300010008");
inline const QByteArray kFence = requestFrame("01rSS0108%DW00000");
inline const QByteArray kFirstAnswer = answerFrame("01rSB01021111");
inline const QByteArray kSecondAnswer = answerFrame("01rSB01022222");
inline const QByteArray kWritten = answerFrame("01wSB");
inline const QByteArray kFenceAnswer = answerFrame("01rSS01020000");
const int kLength = 17;      // of an answer with one word
const int kWriteLength = 9;  // of an answer to a write
const int kTimeoutMs = 518;  // half a second, and twice 38 characters of the usual line
const int kDroppedMs = 5000; // longer than anything is waited for

/** A conversation, and a test as its stations. */
struct Talk
{
    explicit Talk(int fixedMs = 0, RepeatedAnswers repeated = RepeatedAnswers::Confirm)
        : times({fixedMs, 10000000 / 38400})
        , conversation(link, clock, times, settings(repeated))
    {
        QObject::connect(&conversation, &Conversation::ended,
                         [this](const Reply &reply) { replies.append(reply); });
        QObject::connect(&conversation, &Conversation::fenceEnded,
                         [this](const Reply &reply) { fences.append(reply); });
        QObject::connect(&conversation, &Conversation::answeredLate,
                         [this](int, const QByteArray &answer, double lateMs) {
                             late.append(answer);
                             lateTimes.append(qRound(lateMs));
                         });
        QObject::connect(&conversation, &Conversation::answerDoubted,
                         [this](int, const QByteArray &answer, double tookMs) {
                             doubted.append(answer);
                             doubtedTimes.append(qRound(tookMs));
                         });
    }

    static ConversationSettings settings(RepeatedAnswers repeated)
    {
        ConversationSettings settings;
        settings.repeatedAnswers = repeated;
        return settings;
    }

    void ask(const QByteArray &request, int station = 1)
    {
        const bool writes = request.at(3) == 'w';
        conversation.ask({station, request, writes ? kWriteLength : kLength});
    }
    void say(const QByteArray &bytes, int afterMs = 1)
    {
        clock.runFor(afterMs);
        link.say(bytes);
    }
    /** A question with its answer, fenced or not. */
    void settle(const QByteArray &request, const QByteArray &answer)
    {
        ask(request);
        clock.runFor(30); // where the line has to be quiet first
        if (link.sentFrames.last().mid(3, 3) == "rSS") {
            say(kFenceAnswer);
        }
        say(answer);
    }
    void timeOut(const QByteArray &request)
    {
        ask(request);
        clock.runFor(kTimeoutMs + 1);
    }

    /** What has gone out since the last call. */
    QList<QByteArray> takeSent() { return std::exchange(link.sentFrames, {}); }

    VirtualClock clock;
    FakeLink link;
    ResponseTimes times;
    Conversation conversation;
    QList<Reply> replies;
    QList<Reply> fences;
    QList<QByteArray> late;
    QList<int> lateTimes;
    QList<QByteArray> doubted;
    QList<int> doubtedTimes;
};

} // namespace cnet
