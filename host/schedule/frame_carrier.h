#pragma once

#include "host/address/address_range.h"
#include "host/driver/driver_core.h"
#include "host/exchange/conversation.h"
#include "host/exchange/exchange_report.h"

namespace cnet {

/** Carries the driver's frames to the conversation, and the answers back to the driver. */
class FrameCarrier
{
public:
    /** Both must outlive this object. */
    FrameCarrier(DriverCore &driver, Conversation &conversation);

    /** Sends what the driver wants sent next; take() is to follow. @return false: it has nothing */
    bool carry();

    /** What became of the frame: the driver deals with the answer. */
    ExchangeReport take(const Reply &reply);

    /**
     * The driver has a frame in flight: what carry() sends next is that frame, whatever was queued
     * since.
     */
    bool isFrameOpen() const { return m_open; }

    /** The frame that was carried last went out at least once, whatever became of it. */
    bool wasSent() const { return m_sent; }

    /** Has the driver give up the frame in flight; nothing of it reaches the line. */
    void giveUp();

    /** The driver reported changed values while it dealt with the last answer. */
    bool hasChanges() const { return m_changes; }

private:
    void settle(ExchangeReport &report);
    int deal(const QByteArray &answer);
    Purpose purpose() const;

    DriverCore &m_driver;
    Conversation &m_conversation;
    FRAME_PRO m_frame{};
    bool m_open = false;
    bool m_sent = false;
    bool m_changes = false;
};

} // namespace cnet
