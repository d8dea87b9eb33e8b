#include "view/connect/line.h"

#include "plc/scenario/scenarios.h"
#include "simulation/link_sim.h"

namespace cnet::view {

namespace {

// The press is the same one each time.
constexpr quint32 kSeed = 1;

SessionOptions optionsOf(const Connection &connection)
{
    SessionOptions options;
    options.intervalMs = connection.intervalMs;
    options.timeoutMs = connection.timeoutMs;
    options.line = connection.address.line;
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
    m_connection = connection;
    m_session = std::make_unique<Session>(m_driver, makeLineLink(), optionsOf(connection));
    connect(m_session.get(), &Session::stateChanged, this, &Line::stateChanged);
    connect(m_session.get(), &Session::openFailed, this, &Line::stateChanged);
    connect(m_session.get(), &Session::noticed, this, &Line::noticed);
    Q_EMIT sessionBegan(m_session.get());
    m_session->open();
    Q_EMIT stateChanged();
}

void Line::close()
{
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

bool Line::isOpen() const
{
    return m_session && m_session->state() == Session::State::Open;
}

QString Line::stateText() const
{
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

std::unique_ptr<Link> Line::makeLineLink()
{
    if (m_connection.kind != Connection::Kind::Simulator) {
        return makeLink(m_connection.address);
    }
    auto link = std::make_unique<LinkSim>(QVector<int>(), m_connection.address.line.baud);
    link->bus().add(m_connection.station).scenario =
        plc::makeScenario(QLatin1String("press"), kSeed);
    m_bus = &link->bus();
    return link;
}

} // namespace cnet::view
