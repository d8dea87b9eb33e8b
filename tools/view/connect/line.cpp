#include "view/connect/line.h"

#include "view/connect/connection_link.h"

#include <utility>

namespace cnet::view {

namespace {

SessionOptions optionsOf(const Connection &connection)
{
    SessionOptions options;
    options.intervalMs = connection.intervalMs;
    options.timeoutMs = connection.timeoutMs;
    options.line = connection.lineSettings();
    options.lineSpeed =
        connection.kind == Connection::Kind::Tcp ? LineSpeed::Assumed : LineSpeed::Known;
    // The window stays open and goes on trying: that is what one looks at it for.
    options.firstOpen = FirstOpen::Again;
    return options;
}

} // namespace

Line::Line(QObject *parent)
    : QObject(parent)
{}

Line::~Line()
{
    close();
}

QString Line::prepare()
{
    QString error;
    m_driver.load(QString(), error);
    return error;
}

void Line::open(const Connection &connection)
{
    close();
    if (!m_driver.isLoaded()) {
        return;
    }
    m_connection = connection;
    auto link = makeConnectionLink(connection, connection.lineSettings());
    m_bus = simulatorOf(*link);
    m_session = std::make_unique<Session>(m_driver, std::move(link), optionsOf(connection));
    connect(m_session.get(), &Session::stateChanged, this, &Line::stateChanged);
    connect(m_session.get(), &Session::openFailed, this, &Line::stateChanged);
    connect(m_session.get(), &Session::noticed, this, &Line::noticed);
    Q_EMIT sessionBegan(m_session.get());
    m_session->open();
    Q_EMIT stateChanged();
}

void Line::close()
{
    if (std::exchange(m_isLent, false)) {
        Q_EMIT recalled();
        Q_EMIT stateChanged();
    }
    if (!m_session) {
        return;
    }
    Q_EMIT sessionEnding();
    m_session->disconnect(this);
    m_session->close();
    m_session.reset();
    m_bus = nullptr;
    Q_EMIT stateChanged();
}

void Line::lend()
{
    const bool hasSession = m_session != nullptr;
    close();
    m_isLent = true;
    m_opensAgain = hasSession;
    Q_EMIT stateChanged();
}

void Line::takeBack()
{
    if (!std::exchange(m_isLent, false)) {
        return;
    }
    if (m_opensAgain) {
        open(Connection(m_connection));
    } else {
        Q_EMIT stateChanged();
    }
}

bool Line::isOpen() const
{
    return m_session && m_session->state() == Session::State::Open;
}

QString Line::stateText() const
{
    if (m_isLent) {
        return tr("being scanned");
    }
    if (!m_session || m_session->state() == Session::State::Closed) {
        return tr("not connected");
    }
    const QString error = m_session->lineError();
    switch (m_session->state()) {
    case Session::State::Open:
        return tr("connected");
    case Session::State::Opening:
        return error.isEmpty() ? tr("connecting") : tr("cannot connect: %1").arg(error);
    case Session::State::Lost:
    case Session::State::Closed:
        break;
    }
    return tr("lost: %1").arg(error);
}

} // namespace cnet::view
