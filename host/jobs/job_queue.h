#pragma once

#include "host/jobs/job.h"

#include <QList>
#include <QPointer>

namespace cnet {

/** The jobs of a session that are not finished, in the order in which they came. */
class JobQueue
{
public:
    void add(Job *job) { m_jobs.append(job); }

    /** The job whose turn it is: writes and recipes first. @return nullptr: there is none */
    Job *next();

    /** Takes a job out and tells everybody that it is over. */
    void end(Job *job, const Failure &reason);

    /** Ends those that are not kept while the line is down: nobody is to be surprised later. */
    void endUnkept();

    /** Ends all. @param sent the job of which a request is out; nullptr: of none */
    void endAll(const Job *sent);

private:
    enum class Turn { WritesAndRecipes, Reads };

    Job *first(Turn turn) const;

    QList<QPointer<Job>> m_jobs;
};

} // namespace cnet
