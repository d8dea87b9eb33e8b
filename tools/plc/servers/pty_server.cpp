#include "plc/servers/pty_server.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace plc {

namespace {

constexpr int kReadBytes = 4096;

QString targetOf(const QString &link)
{
    QByteArray target(kReadBytes, '\0');
    const ssize_t size = readlink(QFile::encodeName(link).constData(), target.data(),
                                  static_cast<std::size_t>(target.size()));
    return size < 0 ? QString() : QFile::decodeName(target.left(static_cast<int>(size)));
}

} // namespace

PtyServer::PtyServer(const ServerSetup &setup, QObject *parent)
    : QObject(parent)
    , m_setup(setup)
    , m_line(*setup.bus)
    , m_sender([this](const QByteArray &bytes) { send(bytes); }, this)
{}

PtyServer::~PtyServer()
{
    // Another program may have replaced our link.
    if (!m_link.isEmpty() && targetOf(m_link) == m_terminal) {
        QFile::remove(m_link);
    }
    m_notifier.reset();
    if (m_slave >= 0) {
        close(m_slave);
    }
    if (m_master >= 0) {
        close(m_master);
    }
}

bool PtyServer::fail(const QString &what)
{
    m_error = what + QLatin1String(": ") + qt_error_string(errno);
    return false;
}

bool PtyServer::open(const QString &link)
{
    if (!openTerminal() || (!link.isEmpty() && !makeLink(link))) {
        return false;
    }
    m_served = std::make_unique<ServedConnection>(m_setup, m_line, "serial", device());
    m_notifier = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &PtyServer::receive);
    return true;
}

bool PtyServer::openTerminal()
{
    m_master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0) {
        return fail(QLatin1String("cannot make a pseudo-terminal"));
    }
    const char *const name = ptsname(m_master); // NOLINT(concurrency-mt-unsafe): one thread
    if (!name) {
        return fail(QLatin1String("cannot name the pseudo-terminal"));
    }
    m_terminal = QFile::decodeName(name);
    m_slave = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m_slave < 0) {
        return fail(QString::fromLatin1("cannot open %1").arg(m_terminal));
    }
    termios settings = {};
    if (tcgetattr(m_slave, &settings) != 0) {
        return fail(QString::fromLatin1("cannot set up %1").arg(m_terminal));
    }
    // Frames contain control characters, which a terminal would interpret.
    cfmakeraw(&settings);
    if (tcsetattr(m_slave, TCSANOW, &settings) != 0) {
        return fail(QString::fromLatin1("cannot set up %1").arg(m_terminal));
    }
    return true;
}

bool PtyServer::makeLink(const QString &link)
{
    const QString old = targetOf(link);
    if (old.startsWith(QLatin1String("/dev/pts/"))) {
        QFile::remove(link);
    }
    if (symlink(QFile::encodeName(m_terminal).constData(), QFile::encodeName(link).constData()) !=
        0) {
        return fail(QString::fromLatin1("cannot make the link %1").arg(link));
    }
    m_link = link;
    return true;
}

void PtyServer::receive()
{
    char buffer[kReadBytes];
    const ssize_t size = read(m_master, buffer, sizeof buffer);
    if (size <= 0) {
        // Do not wake up for ever if the terminal itself has failed.
        m_notifier->setEnabled(size < 0 && (errno == EAGAIN || errno == EINTR));
        return;
    }
    const QByteArray bytes(buffer, static_cast<int>(size));
    const std::vector<Chunk> answers = m_line.receive(bytes, m_setup.clock.elapsed());
    m_served->received(bytes);
    if (!m_sender.add(answers)) {
        m_served->forgetAnswers();
    }
}

void PtyServer::send(const QByteArray &bytes)
{
    m_served->sent(bytes);
    const ssize_t written =
        write(m_master, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (written < 0 && errno == EAGAIN) {
        // Nobody reads. As on a wire, unread bytes are lost, both old and new.
        tcflush(m_slave, TCIFLUSH);
    }
}

} // namespace plc
