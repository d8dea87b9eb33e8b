#include "host/link/captured_link.h"

#include <utility>

namespace cnet {

CapturedLink::CapturedLink(std::unique_ptr<Link> link, std::shared_ptr<Capture> capture,
                           QObject *parent)
    : Link(parent)
    , m_capture(std::move(capture))
    , m_link(std::move(link))
    , m_line(*m_capture, m_link->name())
{
    connect(m_link.get(), &Link::opened, this, &Link::opened);
    connect(m_link.get(), &Link::failed, this, [this](const QString &reason) {
        flush();
        Q_EMIT failed(reason);
    });
    connect(m_link.get(), &Link::received, this, [this](const QByteArray &bytes) {
        m_line.add(CaptureDirection::Received, bytes);
        Q_EMIT received(bytes);
    });
}

CapturedLink::~CapturedLink()
{
    m_link->disconnect(this);
}

void CapturedLink::close()
{
    m_link->close();
    flush();
}

// What came in before belongs in front of it. And it goes out first: the PLC works while the
// capture is written.
void CapturedLink::send(const QByteArray &bytes)
{
    if (!m_link->isOpen()) {
        return;
    }
    m_line.flush(CaptureDirection::Received);
    m_link->send(bytes);
    m_line.add(CaptureDirection::Sent, bytes);
    m_line.flush(CaptureDirection::Sent);
}

void CapturedLink::flush()
{
    m_line.flush(CaptureDirection::Received);
    m_line.flush(CaptureDirection::Sent);
}

} // namespace cnet
