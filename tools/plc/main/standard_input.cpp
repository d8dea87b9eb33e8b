#include "plc/main/standard_input.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace plc {

namespace {

constexpr int kReadBytes = 4096;
constexpr int kLaterMs = 500;

} // namespace

StandardInput::StandardInput(const ControlTarget &target, ReplyFormat format,
                             std::function<void(const QByteArray &)> reply, QObject *parent)
    : QObject(parent)
    , m_session(target, format, LongLine::IsLeftOut)
    , m_reply(std::move(reply))
    , m_notifier(STDIN_FILENO, QSocketNotifier::Read)
{
    // Reading a terminal from its background would stop the program; now it only fails.
    std::signal(SIGTTIN, SIG_IGN);
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, [this] { m_notifier.setEnabled(true); });
    connect(&m_notifier, &QSocketNotifier::activated, this, &StandardInput::receive);
}

void StandardInput::receive()
{
    char buffer[kReadBytes];
    const ssize_t size = read(STDIN_FILENO, buffer, sizeof buffer);
    if (size > 0) {
        m_session.add(QByteArray(buffer, static_cast<int>(size)));
        answerAll();
        return;
    }
    if (size < 0 && (errno == EINTR || errno == EAGAIN)) {
        return;
    }
    m_notifier.setEnabled(false);
    if (size < 0 && errno == EIO && isatty(STDIN_FILENO) == 1) {
        m_later.start(kLaterMs);
        return;
    }
    m_session.end();
    answerAll();
}

void StandardInput::answerAll()
{
    while (const auto reply = m_session.next()) {
        m_reply(*reply);
    }
    if (m_session.isOver()) {
        m_notifier.setEnabled(false);
    }
}

} // namespace plc
