#include "host/link/reconnector.h"

namespace cnet {

Reconnector::Reconnector(Link &link, Clock &clock, FirstOpen firstOpen, GrowingPause pause,
                         QObject *parent)
    : QObject(parent)
    , m_link(link)
    , m_firstOpen(firstOpen)
    , m_pause(pause)
    , m_again(clock.makeAlarm())
{
    connect(m_again.get(), &Alarm::fired, this, [this] {
        ++m_attempts;
        m_link.open();
    });
    connect(&link, &Link::opened, this, &Reconnector::handleOpened);
    connect(&link, &Link::failed, this, &Reconnector::handleFailed);
    // An open link proves little: a port server may accept and hang up at once. Only bytes that
    // come in make the pause short again.
    connect(&link, &Link::received, this, [this] { m_pause.reset(); });
}

void Reconnector::handleOpened()
{
    m_everOpen = true;
    if (m_lost) {
        m_lost = false;
        Q_EMIT restored(m_attempts);
    }
    m_attempts = 0;
}

void Reconnector::handleFailed(const QString &reason)
{
    if (!m_everOpen && m_firstOpen == FirstOpen::Once) {
        Q_EMIT firstOpenFailed(reason);
        return;
    }
    m_again->set(m_pause.next());
    if (!m_lost) {
        m_lost = true;
        Q_EMIT lost(reason);
    }
}

} // namespace cnet
