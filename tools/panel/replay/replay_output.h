#pragma once

#include "host/recording/recording.h"
#include "panel/replay/answer_comparison.h"

#include <QByteArray>
#include <QMap>

namespace cnet::panel {

/** What became of the requests of a capture. */
struct ReplaySummary
{
    int requests = 0;                ///< that were to be sent
    int sent = 0;                    ///< whose end was seen
    int notCompared = 0;             ///< of these, those whose answer the capture does not have
    QMap<AnswerChange, int> changes; ///< of the others, how many of each kind

    int same() const { return changes.value(AnswerChange::None); }
    /** Everything was sent, and nothing was different. */
    bool isSame() const { return sent == requests && same() + notCompared == sent; }
};

/** A difference in lines of text. @param sinceStartNs when its request was recorded */
QByteArray differenceText(const RecordedFrame &request, qint64 sinceStartNs,
                          const AnswerComparison &comparison);

/** The same as an object on a line. */
QByteArray differenceJson(const RecordedFrame &request, qint64 sinceStartNs,
                          const AnswerComparison &comparison);

/** "12 requests: 10 same, 2 other values". */
QByteArray summaryText(const ReplaySummary &summary);

/** The same as an object on a line. */
QByteArray summaryJson(const ReplaySummary &summary);

} // namespace cnet::panel
