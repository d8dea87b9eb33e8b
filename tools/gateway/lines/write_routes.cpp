#include "gateway/lines/write_routes.h"

#include <QThread>

#include <algorithm>
#include <utility>

namespace cnet::gateway {

std::optional<AuditConfig> auditFor(const GatewayConfig &config)
{
    const bool isOn =
        std::any_of(config.lines.cbegin(), config.lines.cend(),
                    [](const LineConfig &line) { return !line.writes.allow.isEmpty(); });
    return isOn ? std::optional<AuditConfig>(config.audit) : std::nullopt;
}

WriteRoutes::WriteRoutes(const std::optional<AuditConfig> &audit, RecorderThread &recorder,
                         Clock &clock, const Say &say, Find find)
    : m_find(std::move(find))
    , m_clock(clock)
    , m_desk(audit, clock, say)
{
    connect(&recorder, &RecorderThread::asked, &m_desk, &WriteDesk::ask);
    connect(&m_desk, &WriteDesk::answered, &recorder, &RecorderThread::answer,
            Qt::DirectConnection);
    connect(&m_desk, &WriteDesk::wanted, this, &WriteRoutes::route, Qt::QueuedConnection);
    connect(this, &WriteRoutes::answered, &m_desk, &WriteDesk::settle,
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::UniqueConnection));
    const auto wait = Qt::BlockingQueuedConnection;
    QThread *const own = thread();
    connect(
        this, &WriteRoutes::stopping, &m_desk, [this] { m_desk.finish(); }, wait);
    connect(
        this, &WriteRoutes::leaving, &m_desk, [this, own] { m_desk.moveToThread(own); }, wait);
    recorder.host(m_desk);
}

WriteRoutes::~WriteRoutes()
{
    // Without the recorder's end, as where a start failed, its thread must let go of the desk.
    if (m_desk.thread()->isRunning() && m_desk.thread() != thread()) {
        stop();
        Q_EMIT leaving();
    }
}

void WriteRoutes::add(LineWriter &writer)
{
    connect(&writer, &LineWriter::answered, &m_desk, &WriteDesk::settle,
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::UniqueConnection));
}

void WriteRoutes::setAudit(const std::optional<AuditConfig> &audit)
{
    // Behind whatever the recorder does now: the lines do not wait for a slow disk.
    QMetaObject::invokeMethod(
        &m_desk, [this, audit] { m_desk.setAudit(audit); }, Qt::QueuedConnection);
}

void WriteRoutes::route(const WriteRequest &request, qint64 askedMs)
{
    LineWriter *const writer = m_find(request.line);
    if (writer != nullptr) {
        writer->ask(request, askedMs);
    } else {
        Q_EMIT answered(refusalOf(request,
                                  QString::fromLatin1("there is no line '%1'").arg(request.line),
                                  m_clock.wallMs()));
    }
}

void WriteRoutes::stop()
{
    if (!std::exchange(m_hasStopped, true)) {
        Q_EMIT stopping();
    }
}

} // namespace cnet::gateway
