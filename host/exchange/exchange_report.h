#pragma once

#include "host/exchange/request_range.h"

#include <ls_master_k_cnet/codes.h>

#include <QByteArray>
#include <QString>

namespace cnet {

/** How one request ended. */
enum class Outcome {
    Answered, ///< the driver took the answer
    Refused,  ///< the station said no
    Bad,      ///< an answer that could not be used
    TimedOut, ///< no complete answer in time
};

/** One request and what became of it. */
struct ExchangeReport
{
    RequestRange request;
    QByteArray frame;   ///< as sent
    QByteArray answer;  ///< as received, from ACK or NAK on; empty where neither came
    int strayBytes = 0; ///< bytes received that belong to no answer
    qint64 sentMs = 0;  ///< when it was sent, on the exchange's clock
    double tookMs = 0;  ///< until the answer was complete or the time was up
    Outcome outcome = Outcome::Answered;
    int result = kAnswerUnexpected; ///< an AnswerResult
    int refusal = 0;                ///< error code, of Outcome::Refused
    QString note;                   ///< why an answer was not used, where the host decided that

    /** What was asked for, for a message: "D_W:100*10", in the units of the block. */
    QString requestName() const
    {
        return QString::fromLatin1("%1:%2*%3")
            .arg(request.regName)
            .arg(request.startAddr)
            .arg(request.count);
    }

    /** True when nothing came that looks like an answer. */
    bool isSilence() const { return outcome == Outcome::TimedOut && answer.isEmpty(); }

    /** True when the driver is done with the request, well or not. */
    bool isFinal() const { return result == kAnswerGood || result == kAnswerGivenUp; }
};

} // namespace cnet
