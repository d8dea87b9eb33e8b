#include "plc/main/program.h"

#include "plc/main/stop_signals.h"
#include "plc/options/fill_bus.h"
#include "plc/stations/exchange_text.h"
#include "plc/wire/wire.h"

#include <QCoreApplication>

namespace plc {

namespace {

/** A scenario that nobody looks at goes on, too, or it would have to catch up. */
constexpr int kTickMs = 500;

void trace(const QString &connection, const Exchange &exchange)
{
    if (StopSignals::isCaught()) {
        return;
    }
    const QString seconds = QString::number(static_cast<double>(exchange.nowMs) / 1000.0, 'f', 3);
    const QString before = QString::fromLatin1("%1 %2 ").arg(seconds, 9).arg(connection);
    QString text = exchangeText(exchange);
    text.replace(QLatin1Char('\n'), QLatin1Char('\n') + before);
    print(stderr, (before + text + QLatin1Char('\n')).toLocal8Bit());
}

void answer(const QByteArray &reply)
{
    if (!StopSignals::isCaught()) {
        print(stdout, reply);
    }
}

} // namespace

Program::Program(const Options &options)
    : m_options(options)
{
    m_setup.bus = &m_bus;
    m_setup.baud = options.baud;
    m_setup.connections = &m_connections;
    if (options.trace) {
        m_setup.trace = trace;
    }
    m_setup.clock.start();
    m_target.bus = &m_bus;
    m_target.connections = &m_connections;
    m_target.nowMs = [this] { return m_setup.clock.elapsed(); };
    m_target.quit = [] { QCoreApplication::quit(); };
    if (!options.memoryPath.isEmpty()) {
        m_target.save = [this] { return saveMemory(m_options.memoryPath, m_bus); };
    }
}

int Program::open()
{
    const Trouble trouble = fillBus(m_options, m_bus);
    for (const QString &message : trouble.messages) {
        fail(trouble.code, message);
    }
    int code = trouble.code;
    for (int (Program::*const step)() :
         {&Program::readScript, &Program::openCapture, &Program::openServers, &Program::openControl,
          &Program::announce}) {
        code = code == kExitFine ? (this->*step)() : code;
    }
    return code;
}

int Program::readScript()
{
    if (m_options.scriptPath.isEmpty()) {
        return kExitFine;
    }
    const auto lines = readLines(m_options.scriptPath);
    if (const TextError *error = std::get_if<TextError>(&lines)) {
        return fail(kExitCannotOpen, QLatin1String("--script: ") + error->message);
    }
    Mistakes mistakes(m_options.scriptPath);
    auto script = parseScript(std::get<QStringList>(lines), m_target, mistakes);
    const QStringList told = mistakes.told();
    for (const QString &mistake : told) {
        fail(kExitUsage, mistake);
    }
    m_player = std::make_unique<ScriptPlayer>(
        m_target, std::move(script), [this](const ScriptLine &line, const Reply &reply) {
            if (!reply.isGood()) {
                fail(kExitUsage, QString::fromLatin1("%1:%2: %3")
                                     .arg(m_options.scriptPath)
                                     .arg(line.number)
                                     .arg(reply.error));
            } else if (!reply.lines.isEmpty()) {
                answer(reply.bytes(m_options.controlFormat));
            }
        });
    return told.isEmpty() ? kExitFine : kExitUsage;
}

// Whatever becomes of the capture is told, and the stations go on answering.
int Program::openCapture()
{
    if (!m_options.capture) {
        return kExitFine;
    }
    QString error;
    m_capture = cnet::Capture::open(*m_options.capture, error);
    if (!m_capture) {
        return fail(kExitCannotOpen, error);
    }
    m_capture->setWords([](const QByteArray &bytes, cnet::CaptureDirection) {
        const char first = bytes.at(0);
        const bool frame = first == kEnq || first == kAck || first == kNak;
        return frame ? frameInWords(bytes) : QLatin1String("no frame");
    });
    m_capture->setTrouble([](const QString &what) { fail(kExitOutputLost, what); });
    m_setup.capture = m_capture.get();
    return kExitFine;
}

int Program::openServers()
{
    for (const TcpAddress &address : m_options.tcp) {
        m_servers.push_back(std::make_unique<TcpServer>(m_setup));
        if (!m_servers.back()->listen(address.host, address.port)) {
            return fail(kExitCannotOpen, QString::fromLatin1("cannot listen on %1: %2")
                                             .arg(addressText(address.host, address.port),
                                                  m_servers.back()->errorString()));
        }
    }
    if (m_options.ptyLink) {
        m_pty = std::make_unique<PtyServer>(m_setup);
        if (!m_pty->open(*m_options.ptyLink)) {
            return fail(kExitCannotOpen, m_pty->errorString());
        }
    }
    return kExitFine;
}

int Program::openControl()
{
    for (const ControlAddress &address : m_options.control) {
        m_control.push_back(std::make_unique<ControlServer>(m_target, m_options.controlFormat));
        ControlServer &server = *m_control.back();
        const bool tcp = address.path.isEmpty();
        if (!(tcp ? server.listen(address.tcp.host, address.tcp.port)
                  : server.listenLocally(address.path))) {
            return fail(
                kExitCannotOpen,
                QString::fromLatin1("cannot take commands at %1: %2")
                    .arg(tcp ? addressText(address.tcp.host, address.tcp.port) : address.path,
                         server.errorString()));
        }
    }
    return kExitFine;
}

int Program::announce()
{
    QString places;
    for (const auto &server : m_servers) {
        places += QString::fromLatin1("listening on %1\n").arg(server->address());
    }
    if (m_pty) {
        places += QString::fromLatin1("serving at %1\n").arg(m_pty->device());
    }
    for (const auto &server : m_control) {
        places += QString::fromLatin1("taking commands at %1\n").arg(server->address());
    }
    // Nobody can connect to a port that is not announced.
    return say(places);
}

int Program::run()
{
    m_input = std::make_unique<StandardInput>(m_target, m_options.controlFormat, answer);
    if (!m_options.scenario.isEmpty()) {
        QObject::connect(&m_tick, &QTimer::timeout,
                         [this] { m_bus.advance(m_setup.clock.elapsed()); });
        m_tick.start(kTickMs);
    }
    if (m_player) {
        m_player->start();
    }
    if (m_capture) {
        m_capture->begin();
    }
    const int code = QCoreApplication::exec();
    if (m_target.save) {
        m_bus.advance(m_setup.clock.elapsed());
        if (const auto error = m_target.save()) {
            return fail(kExitCannotOpen, error->message);
        }
    }
    return code == kExitFine && m_capture && m_capture->isIncomplete() ? kExitOutputLost : code;
}

} // namespace plc
