#pragma once

#include "host/jobs/block_request.h"

#include <QObject>
#include <QString>

#include <optional>

namespace cnet {

/**
 * Work that a session does once: read, write, transfer a recipe. Whatever ends it, finished()
 * comes exactly once, and never from within the call that made the job. The job belongs to the
 * session; who made it may delete it earlier, which cancels it.
 */
class Job : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Waiting,   ///< for its turn
        Running,   ///< at least one request went out
        Done,      ///< all of it was done
        Failed,    ///< not all of it was done: failure() says why
        Cancelled, ///< by cancel(), or by the end of the session
    };

    explicit Job(QObject *parent = nullptr);

    State state() const { return m_state; }
    bool isFinished() const;

    /** Why it failed or was cancelled, in words; empty otherwise. */
    QString failure() const { return m_failure; }

    /**
     * Ends it as soon as the line allows. What went out already may have been carried out.
     * finished() follows.
     */
    void cancel();

    // For the session.

    /** What is to be asked next; nothing when the job is over. */
    virtual std::optional<BlockRequest> next() = 0;
    /** The request that next() returned is being sent. */
    virtual void begun(const BlockRequest &request);
    virtual void ended(const BlockRequest &request, const BlockResult &result) = 0;
    /** True for what goes before reads: writes and recipes. */
    virtual bool goesFirst() const { return false; }
    /** The line is lost. @return true when the job is kept until it is back */
    virtual bool outlivesLine() const { return true; }
    bool isCancelRequested() const { return m_cancelRequested; }
    /** Ends it and emits finished(). @param reason of a job that could not end by itself */
    void conclude(const Failure &reason = Failure());

Q_SIGNALS:
    /** @param done,total in the job's own units: words, bits and contacts */
    void progressed(int done, int total);
    void finished();
    /** cancel() was called; for the session. */
    void cancelRequested();

protected:
    /** Everything that is still open fails for this reason. */
    virtual void giveUp(const Failure &reason) = 0;
    /** Why the job as a whole failed; None: it did not. */
    virtual QString verdict() const = 0;

private:
    State m_state = State::Waiting;
    QString m_failure;
    bool m_cancelRequested = false;
};

} // namespace cnet
