#pragma once

#include "host/address/address_range.h"
#include "host/exchange/failure.h"
#include "host/exchange/reply.h"

#include <QMetaType>

namespace cnet {

/** What a request was for. */
enum class Purpose {
    Cyclic, ///< a block of the monitored items
    Read,   ///< a one-off read
    Write,
    Recipe, ///< a block of a recipe
    Fence,  ///< the host's own: does the station answer, and is the line clear
};

/** One request and what became of it. */
struct ExchangeReport
{
    Purpose purpose = Purpose::Cyclic;
    Reply reply;
    AddressRange range;  ///< what was asked for; empty for a fence
    bool final = true;   ///< false: the same request is sent again
    bool good = false;   ///< the driver took the answer
    bool wentOut = true; ///< at this attempt or an earlier one: the station may have carried it out
    int refusal = 0;     ///< error code, of Outcome::Refused

    int station() const { return reply.station; }

    /** What was asked for, in words: "D_W:100*10", in the units of the block. */
    QString block() const
    {
        return purpose == Purpose::Fence ? QLatin1String("a sign of life") : range.text();
    }

    /** True when nothing came that looks like an answer. */
    bool isSilence() const { return reply.outcome == Outcome::TimedOut; }

    Failure failure() const
    {
        Failure failure;
        failure.sent = wentOut;
        failure.code = refusal;
        failure.kind = good                                 ? Failure::None
                       : reply.outcome == Outcome::Refused  ? Failure::Refused
                       : reply.outcome == Outcome::TimedOut ? Failure::NoAnswer
                                                            : Failure::BadAnswer;
        return failure;
    }
};

} // namespace cnet

Q_DECLARE_METATYPE(cnet::ExchangeReport)
