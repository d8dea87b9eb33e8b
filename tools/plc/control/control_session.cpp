#include "plc/control/control_session.h"

namespace plc {

namespace {

constexpr char kTooLong[] = "a line is longer than 4096 bytes";

/**
 * Whether a web browser speaks: a page may make it send anything to a port of its own machine,
 * where a line of that anything could be a command.
 */
bool isWebRequest(const QByteArray &line)
{
    return line.trimmed().contains(" HTTP/");
}

} // namespace

ControlSession::ControlSession(const ControlTarget &target, ReplyFormat format, LongLine longLine)
    : m_target(target)
    , m_format(format)
    , m_longLine(longLine)
{}

QByteArray ControlSession::leave(const char *why)
{
    m_over = true;
    m_input.clear();
    return failure(QLatin1String(why)).bytes(m_format);
}

/** @return false while its end has not come */
bool ControlSession::leaveOutTheRest()
{
    const auto end = m_input.indexOf('\n');
    m_inLongLine = end < 0;
    m_leftOut = m_inLongLine ? m_leftOut + m_input.size() : 0;
    m_over = m_leftOut > kEndlessLine;
    m_input.remove(0, m_inLongLine ? m_input.size() : end + 1);
    return !m_inLongLine;
}

std::optional<QByteArray> ControlSession::next()
{
    while (!m_over && (!m_inLongLine || leaveOutTheRest())) {
        const auto end = m_input.indexOf('\n');
        if (end > kLongestLine || (end < 0 && m_input.size() > kLongestLine)) {
            if (m_longLine == LongLine::EndsTheTalk) {
                return leave(kTooLong);
            }
            m_inLongLine = true;
            return failure(QLatin1String(kTooLong)).bytes(m_format);
        }
        if (end < 0) {
            return std::nullopt;
        }
        const QByteArray line = m_input.left(end);
        m_input.remove(0, end + 1);
        if (isWebRequest(line)) {
            return leave("this is no web server");
        }
        if (!isRemark(QString::fromUtf8(line))) {
            return replyTo(line);
        }
    }
    return std::nullopt;
}

QByteArray ControlSession::replyTo(const QByteArray &line)
{
    const QByteArray word = line.trimmed();
    if (word == "json" || word == "text") {
        m_format = word == "json" ? ReplyFormat::Json : ReplyFormat::Text;
        return Reply().bytes(m_format);
    }
    return runCommand(QString::fromUtf8(line), m_target).bytes(m_format);
}

} // namespace plc
