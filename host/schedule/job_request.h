#pragma once

#include "host/jobs/job.h"
#include "host/schedule/frame_carrier.h"
#include "host/schedule/poller.h"

#include <QPointer>

namespace cnet {

/** The one request of a job that is underway: handed to the driver, and followed until it is done.
 */
class JobRequest
{
public:
    /** All must outlive this object. */
    JobRequest(DriverCore &driver, FrameCarrier &carrier, Poller &poller);

    bool isOpen() const { return m_open; }
    Job *job() const { return m_job; }
    bool isRecipe() const { return m_open && m_request.kind == BlockRequest::Recipe; }

    /** Has the driver make the request and sends its frame. @return false: it has none
     */
    bool begin(Job *job, const BlockRequest &request);

    /** True when a frame that has ended belongs to it. */
    bool concerns(const ExchangeReport &report) const;

    /** A frame of it ended for good. @return true when the request is over with it */
    bool take(const ExchangeReport &report);

    /** Tells the job. @return the job, unless it is gone meanwhile */
    QPointer<Job> finish(const Failure &failure);

    /** Forgets it; the job is told nothing. */
    void drop();

private:
    DriverCore &m_driver;
    FrameCarrier &m_carrier;
    Poller &m_poller;
    QPointer<Job> m_job;
    BlockRequest m_request;
    bool m_open = false;
};

} // namespace cnet
