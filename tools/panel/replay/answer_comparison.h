#pragma once

#include "host/decode/decoded_frame.h"

namespace cnet::panel {

/** How an answer differs from the one that was recorded. */
enum class AnswerChange {
    None,       ///< the same bytes, or nothing both times
    Values,     ///< good, with other values
    Refused,    ///< refused instead of good
    Accepted,   ///< good instead of refused
    OtherError, ///< refused, too, with another code
    Missing,    ///< nothing came instead of an answer
    Unexpected, ///< an answer came where nothing had come
    Damaged,    ///< unusable, other than it was
    Mended,     ///< usable, where it was not
};

/** "other values", "no answer": behind a number, too. */
const char *changeText(AnswerChange change);

/** One value of an answer that is another one. */
struct ChangedValue
{
    Item item; ///< this value alone
    bool isBit = false;
    quint16 recorded = 0;
    quint16 now = 0;
};

/** Two answers to one request. */
struct AnswerComparison
{
    AnswerChange change = AnswerChange::None;
    DecodedFrame request;
    DecodedFrame recorded;        ///< without bytes: nothing came
    DecodedFrame now;             ///< the same
    QVector<ChangedValue> values; ///< of Values, where the request tells their addresses
};

/** Compares what came for a request with what was recorded; empty: nothing came. Any bytes do. */
AnswerComparison compareAnswers(const QByteArray &request, const QByteArray &recorded,
                                const QByteArray &now);

} // namespace cnet::panel
