#include "host/jobs/job.h"

namespace cnet {

Job::Job(QObject *parent)
    : QObject(parent)
{}

bool Job::isFinished() const
{
    return m_state != State::Waiting && m_state != State::Running;
}

void Job::cancel()
{
    if (!isFinished() && !m_cancelRequested) {
        m_cancelRequested = true;
        Q_EMIT cancelRequested();
    }
}

void Job::begun(const BlockRequest & /*request*/)
{
    m_state = State::Running;
}

void Job::conclude(const Failure &reason)
{
    if (isFinished()) {
        return;
    }
    if (!reason.isNone()) {
        giveUp(reason);
    }
    const QString own = verdict();
    m_failure = own.isEmpty() ? reason.text() : own;
    m_state = reason.kind == Failure::Cancelled ? State::Cancelled
              : m_failure.isEmpty()             ? State::Done
                                                : State::Failed;
    Q_EMIT finished();
}

} // namespace cnet
