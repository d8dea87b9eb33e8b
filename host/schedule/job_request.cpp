#include "host/schedule/job_request.h"

#include "host/recipe/recipe_job.h"
#include "host/wire/frame_words.h"

#include <utility>

namespace cnet {

JobRequest::JobRequest(DriverCore &driver, FrameCarrier &carrier, Poller &poller)
    : m_driver(driver)
    , m_carrier(carrier)
    , m_poller(poller)
{}

bool JobRequest::begin(Job *job, const BlockRequest &request)
{
    m_job = job;
    m_request = request;
    m_open = true;
    switch (request.kind) {
    case BlockRequest::Write:
        m_driver.queueWrite(request.item, request.values);
        break;
    case BlockRequest::Read:
        if (request.item.reg.isContact()) {
            // Of contacts the driver's one-off read reads others than meant.
            m_poller.disturb();
            m_driver.merge({keyOf(request.item)});
        } else {
            m_driver.queueRead(request.item);
        }
        break;
    case BlockRequest::Recipe:
        m_poller.disturb();
        break;
    }
    job->begun(request);
    return m_carrier.carry();
}

bool JobRequest::concerns(const ExchangeReport &report) const
{
    if (!m_open) {
        return false;
    }
    switch (m_request.kind) {
    case BlockRequest::Write:
        return report.purpose == Purpose::Write;
    case BlockRequest::Recipe:
        return true;
    case BlockRequest::Read:
        break;
    }
    return report.purpose == Purpose::Read ||
           (m_request.item.reg.isContact() && report.purpose == Purpose::Cyclic);
}

bool JobRequest::take(const ExchangeReport &report)
{
    if (m_request.kind == BlockRequest::Recipe) {
        auto *const recipe = qobject_cast<RecipeJob *>(m_job);
        return recipe == nullptr || recipe->blockEnded(report);
    }
    if (m_request.kind == BlockRequest::Read && report.good) {
        m_poller.rangeRead(report.range);
    }
    // The bit of a data register is changed within its word, which is read first.
    return m_request.kind != BlockRequest::Write || !report.good ||
           isWriteRequest(report.reply.frame);
}

QPointer<Job> JobRequest::finish(const Failure &failure)
{
    BlockResult result;
    result.failure = failure;
    const BlockRequest request = std::exchange(m_request, {});
    QPointer<Job> job = std::exchange(m_job, nullptr);
    m_open = false;
    if (request.kind == BlockRequest::Read && failure.isNone()) {
        result.values = m_driver.values(request.item);
    }
    if (request.kind == BlockRequest::Read && request.item.reg.isContact()) {
        m_driver.merge({});
    }
    if (job) {
        job->ended(request, result);
    }
    return job;
}

void JobRequest::drop()
{
    m_open = false;
    m_job = nullptr;
    m_request = {};
}

} // namespace cnet
