#pragma once

#include "gateway/delivery/say.h"

#include "host/time/clock.h"

#include <QMap>
#include <QString>

#include <mutex>

namespace cnet::gateway {

/**
 * Keeps what comes and goes without end from filling the log: of each subject, which stands before
 * a line's first colon, some lines pass at once and later one now and then. How many were left out
 * is said. For several threads.
 */
class LogLimit
{
public:
    static constexpr int kAtOnce = 20;
    static constexpr qint64 kOneEachMs = 10000; ///< afterwards

    /** @param clock must outlive this object */
    LogLimit(Clock &clock, Say say);

    void take(Weight weight, const QString &line);

    /** Says what was left out meanwhile. To be called now and then. */
    void sayLeftOut();

    /** To be handed on; this object must outlive it. */
    Say say();

private:
    struct Subject
    {
        int lines = kAtOnce; ///< that may pass now
        qint64 countedMs = 0;
        qint64 leftOut = 0;
    };

    void refill(Subject &subject) const;
    void sayLeftOut(const QString &name, Subject &subject);

    Clock &m_clock;
    Say m_say;
    std::mutex m_mutex;
    QMap<QString, Subject> m_subjects;
};

} // namespace cnet::gateway
