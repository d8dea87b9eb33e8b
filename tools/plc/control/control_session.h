#pragma once

#include "plc/control/commands.h"

#include <optional>

namespace plc {

/**
 * One conversation: bytes in, commands line by line, replies out. It has no device; the caller
 * decides when to take the next reply, so that nothing heaps up for a reader who does not read.
 */
class ControlSession
{
public:
    /** A line has at most so many bytes, without its end. */
    static constexpr int kLongestLine = 4096;

    /** @param target must outlive the session */
    ControlSession(const ControlTarget &target, ReplyFormat format);

    /** Takes what has arrived. To be called when next() has nothing left. */
    void add(const QByteArray &bytes) { m_input += bytes; }

    /** No more will come, and the last line may lack its end. */
    void end() { m_input += '\n'; }

    /** Carries out the next whole line. @return its reply, or nothing if there is none yet. */
    std::optional<QByteArray> next();

    /** Whether the other side talks nonsense and is to be left: nothing more is carried out. */
    bool isOver() const { return m_over; }

private:
    QByteArray replyTo(const QByteArray &line);
    QByteArray leave(const char *why);

    const ControlTarget &m_target;
    ReplyFormat m_format;
    QByteArray m_input;
    bool m_over = false;
};

} // namespace plc
