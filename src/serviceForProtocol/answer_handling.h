#pragma once

#include <QtCore/QByteArray>

/// What `intf_dealRcvFrame` returns.
enum AnswerResult {
    kAnswerUnexpected = 0, ///< no frame was in flight
    kAnswerGood = 1,       ///< the job's step is done
    kAnswerGivenUp = 2,    ///< the last bad answer allowed: the job is over
    kAnswerResend = 8      ///< bad: the frame stays in flight
};

/// Decodes an accepted read answer with the frame in flight. Exchange thread.
/// @return  0
int dealReadFrameReturnSaveData(const QByteArray &reply);
