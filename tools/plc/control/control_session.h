#pragma once

#include "plc/control/commands.h"

#include <optional>

namespace plc {

/** What a line does that is too long. */
enum class LongLine {
    EndsTheTalk, ///< whoever sends it may be anybody, for example a web browser
    IsLeftOut,   ///< it was typed wrongly, and the next one is taken
};

/**
 * One conversation: bytes in, commands line by line, replies out. It has no device; the caller
 * decides when to take the next reply, so that nothing heaps up for a reader who does not read.
 */
class ControlSession
{
public:
    /** A line has at most so many bytes, without its end. */
    static constexpr int kLongestLine = 4096;
    /** Of a line that is left out; behind it no end is to be expected, as in /dev/zero. */
    static constexpr int kEndlessLine = 1048576;

    /** @param target must outlive the session */
    ControlSession(const ControlTarget &target, ReplyFormat format,
                   LongLine longLine = LongLine::EndsTheTalk);

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
    bool leaveOutTheRest();

    const ControlTarget &m_target;
    ReplyFormat m_format;
    LongLine m_longLine;
    QByteArray m_input;
    bool m_inLongLine = false; ///< what comes up to its end is left out
    qint64 m_leftOut = 0;      ///< bytes of it
    bool m_over = false;
};

} // namespace plc
