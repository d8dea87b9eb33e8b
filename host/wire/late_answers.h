#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>

namespace cnet {

/**
 * Guards against answers to older questions.
 *
 * An answer names its station and command but not what was asked, so one that comes after its
 * time-out looks like the answer to the next request of the same kind. This class remembers which
 * requests still may be answered and judges whether an answer can be told from theirs.
 */
class LateAnswers
{
public:
    struct Verdict
    {
        bool usable = true; ///< false: it may be the answer to another request
        /** Answers that may still come; the line must be kept quiet for them. */
        int underway = 0;
    };

    /** A request was not answered in time. */
    void missed(const QByteArray &request);

    /**
     * An answer came that fits the station and command of `request`. Whatever the verdict, what was
     * missed of this kind is forgotten, since the line is emptied now.
     */
    Verdict judge(const QByteArray &request);

    /** The line was opened anew, or is known to be empty. */
    void clear() { m_missed.clear(); }

private:
    struct Missed
    {
        QSet<QByteArray> requests;
        int attempts = 0;
    };

    QHash<QByteArray, Missed> m_missed; ///< by station and command
};

/** True when an answer's station and command are those of the request. */
bool belongsTogether(const QByteArray &request, const QByteArray &answer);

} // namespace cnet
