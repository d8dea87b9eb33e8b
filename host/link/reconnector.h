#pragma once

#include "host/link/link.h"

#include <QTimer>

#include <algorithm>

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
        m_nextMs = std::min(m_nextMs * 2, m_longestMs);
        return pause;
    }

    void reset() { m_nextMs = m_firstMs; }

private:
    int m_firstMs;
    int m_longestMs;
    int m_nextMs;
};

/**
 * Opens a link and keeps opening it again when it is lost. Only where it never was open does a
 * failure end the matter: then the address is probably wrong, and the user should know at once.
 */
class Reconnector : public QObject
{
    Q_OBJECT

public:
    /** @param link must outlive this object */
    explicit Reconnector(Link &link, GrowingPause pause = GrowingPause(100, 5000),
                         QObject *parent = nullptr);

    void start() { m_link.open(); }

    /** No further attempt; the link stays as it is. */
    void stop() { m_again.stop(); }

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
    GrowingPause m_pause;
    QTimer m_again;
    bool m_everOpen = false;
    bool m_lost = false;
    int m_attempts = 0;
};

} // namespace cnet
