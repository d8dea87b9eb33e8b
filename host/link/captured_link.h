#pragma once

#include "host/capture/capture_line.h"
#include "host/link/link.h"

namespace cnet {

/**
 * A link all of whose bytes go into a capture: requests and fences, answers in time and late ones,
 * and what is no answer at all. A link without a capture has nothing of this.
 */
class CapturedLink : public Link
{
    Q_OBJECT

public:
    /** @param link not opened yet */
    CapturedLink(std::unique_ptr<Link> link, std::shared_ptr<Capture> capture,
                 QObject *parent = nullptr);
    ~CapturedLink() override;

    void open() override { m_link->open(); }
    void close() override;
    bool isOpen() const override { return m_link->isOpen(); }
    void send(const QByteArray &bytes) override;
    QString name() const override { return m_link->name(); }

private:
    void flush();

    std::shared_ptr<Capture> m_capture;
    std::unique_ptr<Link> m_link;
    CaptureLine m_line;
};

} // namespace cnet
