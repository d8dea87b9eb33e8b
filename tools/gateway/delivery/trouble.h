#pragma once

#include "gateway/delivery/say.h"

#include <QString>

namespace cnet::gateway {

/**
 * Something that fails now and then and is tried again: says so once, and when it works again, and
 * how long to wait until the next time.
 */
class Trouble
{
public:
    /** @param subject what has the trouble: "ledger" */
    Trouble(QString subject, Say say);

    /**
     * It failed.
     * @param reason in words
     * @param more about it, for the line that says so; often empty
     * @return milliseconds to wait: a second, then longer, up to a minute
     */
    int failed(const QString &reason, const QString &more = QString());

    /** It works. @param more about it, for the line that says so; often empty */
    void fine(const QString &more = QString());

    bool isThere() const { return m_pauseMs > 0; }
    /** Why it failed last; empty while there is no trouble. */
    const QString &reason() const { return m_reason; }

private:
    QString m_subject;
    Say m_say;
    QString m_reason;
    int m_pauseMs = 0;
};

} // namespace cnet::gateway
