#include "host/jobs/job_queue.h"

#include <algorithm>
#include <utility>

namespace cnet {

Job *JobQueue::first(Turn turn) const
{
    const bool urgent = turn == Turn::WritesAndRecipes;
    const auto found =
        std::find_if(m_jobs.cbegin(), m_jobs.cend(), [urgent](const QPointer<Job> &job) {
            return job && job->goesFirst() == urgent;
        });
    return found == m_jobs.cend() ? nullptr : found->data();
}

Job *JobQueue::next()
{
    m_jobs.removeAll(QPointer<Job>());
    Job *const urgent = first(Turn::WritesAndRecipes);
    return urgent != nullptr ? urgent : first(Turn::Reads);
}

void JobQueue::end(Job *job, const Failure &reason)
{
    m_jobs.removeAll(job);
    job->conclude(reason);
}

void JobQueue::endUnkept()
{
    Failure reason;
    reason.kind = Failure::LineDown;
    const QList<QPointer<Job>> jobs = m_jobs;
    for (const QPointer<Job> &job : jobs) {
        if (job && !job->outlivesLine()) {
            end(job, reason);
        }
    }
}

void JobQueue::endAll(const Job *sent)
{
    Failure reason;
    reason.kind = Failure::Cancelled;
    reason.detail = QLatin1String("the session was closed");
    const QList<QPointer<Job>> jobs = std::exchange(m_jobs, {});
    for (const QPointer<Job> &job : jobs) {
        if (job) {
            reason.sent = job == sent;
            end(job, reason);
        }
    }
}

} // namespace cnet
