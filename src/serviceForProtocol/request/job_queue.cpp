#include "serviceForProtocol/request/job_queue.h"

#include "shared/protocol.h"

void insertJob(QList<VARIABLE> &jobs, const VARIABLE &job)
{
    const int size = static_cast<int>(jobs.size());
    for (int i = size - 1; i > 0; --i) {
        if (isSameRequest(jobs.at(i), job)) {
            jobs[i] = job;
            return;
        }
    }
    if (size >= kMaxWaitingJobs) {
        jobs[kMaxWaitingJobs - 1] = job;
    } else {
        jobs.append(job);
    }
}
