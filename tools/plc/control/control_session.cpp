#include "plc/control/control_session.h"

namespace plc {

namespace {

/**
 * Whether a web browser speaks: a page may make it send anything to a port of its own machine,
 * where a line of that anything could be a command.
 */
bool isWebRequest(const QByteArray &line)
{
    return line.trimmed().contains(" HTTP/");
}

} // namespace

ControlSession::ControlSession(const ControlTarget &target, ReplyFormat format)
    : m_target(target)
    , m_format(format)
{}

QByteArray ControlSession::leave(const char *why)
{
    m_over = true;
    m_input.clear();
    return failure(QLatin1String(why)).bytes(m_format);
}

std::optional<QByteArray> ControlSession::next()
{
    while (!m_over) {
        const auto end = m_input.indexOf('\n');
        if (end > kLongestLine || (end < 0 && m_input.size() > kLongestLine)) {
            return leave("a line is longer than 4096 bytes");
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
