#pragma once

#include "host/link/first_open.h"
#include "host/link/link.h"
#include "host/time/clock.h"

#include <memory>

namespace cnet {

/** Pauses that double from the first to the longest. */
class GrowingPause
{
public:
    /** Both in milliseconds, 1 or more. */
    GrowingPause(int firstMs, int longestMs)
        : m_firstMs(firstMs)
        , m_longestMs(longestMs)
        , m_nextMs(firstMs)
    {}

    int next()
    {
        const int pause = m_nextMs;
        m_nextMs = m_nextMs > m_longestMs / 2 ? m_longestMs : m_nextMs * 2;
        return pause;
    }

    void reset() { m_nextMs = m_firstMs; }

private:
    int m_firstMs;
    int m_longestMs;
    int m_nextMs;
};

/** Opens a link and keeps opening it again when it is lost. */
class Reconnector : public QObject
{
    Q_OBJECT

public:
    /** @param link,clock must outlive this object */
    Reconnector(Link &link, Clock &clock, FirstOpen firstOpen = FirstOpen::Once,
                GrowingPause pause = GrowingPause(100, 5000), QObject *parent = nullptr);

    void start() { m_link.open(); }

    /** No further attempt; the link stays as it is. */
    void stop() { m_again->cancel(); }

    /** Attempts since the link was lost. */
    int attempts() const { return m_attempts; }

Q_SIGNALS:
    /** The link could not be opened at the start; there is no further attempt. */
    void firstOpenFailed(const QString &reason);
    /** An open link is gone; said once, however often opening fails after that. */
    void lost(const QString &reason);
    /** The link is back after `attempts` attempts. */
    void restored(int attempts);

private:
    void handleOpened();
    void handleFailed(const QString &reason);

    Link &m_link;
    FirstOpen m_firstOpen;
    GrowingPause m_pause;
    std::unique_ptr<Alarm> m_again;
    bool m_everOpen = false;
    bool m_lost = false;
    int m_attempts = 0;
};

} // namespace cnet
