#pragma once

#include "gateway/change/write_request.h"

#include "host/jobs/write_job.h"
#include "host/tag/tag.h"

namespace cnet::gateway {

/** An answer to a request, that of one that was not sent. @param reason in words */
WriteAnswer refusalOf(const WriteRequest &request, const QString &reason, qint64 atMs);

/** How the write of one value ended. */
struct EndedWrite
{
    Tag tag;
    WriteResult result;
    bool wasPartlyTaken = false; ///< the PLC has confirmed some of its words
    QString whyCancelled;        ///< where its job was
};

/** What is answered. It is said to be taken only where the PLC was found to hold it. */
WriteAnswer answerOf(const WriteRequest &request, const EndedWrite &ended, qint64 atMs);

} // namespace cnet::gateway
