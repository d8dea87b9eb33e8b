#include "plc/main/options.h"
#include "plc/main/stop_signals.h"
#include "plc/servers/pty_server.h"
#include "plc/servers/tcp_server.h"
#include "plc/stations/exchange_text.h"
#include "plc/wire/wire.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

using namespace plc;

/** @return false, with the reason in errno, if the text cannot be written. */
bool print(std::FILE *file, const QString &text)
{
    const QByteArray bytes = text.toLocal8Bit();
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, file) == size && std::fflush(file) == 0;
}

/**
 * Turns any text from the command line into one short line. A message begins with what was given
 * and ends with what was expected, so the middle of a long one is left out.
 */
QString oneLine(QString text)
{
    constexpr int kLongest = 600;
    if (text.size() > kLongest) {
        text = text.left(kLongest / 2) + QLatin1String("...") + text.right(kLongest / 2);
    }
    for (QChar &letter : text) {
        if (!letter.isPrint()) {
            letter = QLatin1Char('?');
        }
    }
    return text;
}

int fail(ExitCode code, const QString &message)
{
    print(stderr, QString::fromLatin1("cnet-plc: %1\n").arg(oneLine(message)));
    return code;
}

/** Prints what the user has asked for. @return the exit code. */
int say(const QString &text)
{
    // A signal may interrupt the write: then the program was told to end, and nothing is wrong.
    if (!print(stdout, text) && !StopSignals::isCaught()) {
        return fail(
            kExitUsage,
            QString::fromLatin1("cannot write to standard output: %1").arg(qt_error_string(errno)));
    }
    return kExitFine;
}

/**
 * Occupies the standard streams that the caller has closed; otherwise a connection would get their
 * numbers. They are opened the wrong way round, so that using them still fails.
 */
void keepStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

void trace(const QString &connection, const Exchange &exchange)
{
    if (StopSignals::isCaught()) {
        return;
    }
    const QString seconds = QString::number(static_cast<double>(exchange.nowMs) / 1000.0, 'f', 3);
    const QString before = QString::fromLatin1("%1 %2 ").arg(seconds, 9).arg(connection);
    QString text = exchangeText(exchange);
    text.replace(QLatin1Char('\n'), QLatin1Char('\n') + before);
    print(stderr, before + text + QLatin1Char('\n'));
}

/**
 * Opens the capture. Whatever becomes of it is told, and the stations go on answering.
 * @return false on failure, which was told
 */
bool openCapture(const Options &options, std::unique_ptr<cnet::Capture> &capture)
{
    if (!options.capture) {
        return true;
    }
    QString error;
    capture = cnet::Capture::open(*options.capture, error);
    if (!capture) {
        fail(kExitCannotOpen, error);
        return false;
    }
    capture->setWords([](const QByteArray &bytes, cnet::CaptureDirection) {
        const char first = bytes.at(0);
        const bool frame = first == kEnq || first == kAck || first == kNak;
        return frame ? frameInWords(bytes) : QLatin1String("no frame");
    });
    capture->setTrouble([](const QString &what) { fail(kExitOutputLost, what); });
    return true;
}

/** Runs until a signal. @return the exit code */
int runUntilSignal(cnet::Capture *capture)
{
    if (capture) {
        capture->begin();
    }
    const int code = QCoreApplication::exec();
    return code == kExitFine && capture && capture->isIncomplete() ? kExitOutputLost : code;
}

using Servers = std::vector<std::unique_ptr<TcpServer>>;

/** @return false on failure, which was told */
bool listen(const Options &options, const ServerSetup &setup, Servers &servers)
{
    for (const TcpAddress &address : options.tcp) {
        servers.push_back(std::make_unique<TcpServer>(setup));
        if (!servers.back()->listen(address.host, address.port)) {
            fail(kExitCannotOpen,
                 QString::fromLatin1("cannot listen on %1: %2")
                     .arg(addressText(address.host, address.port), servers.back()->errorString()));
            return false;
        }
    }
    return true;
}

int serve(const Options &options)
{
    Bus bus;
    if (const auto error = fillBus(options, bus)) {
        return fail(kExitUsage, error->message);
    }
    ServerSetup setup;
    setup.bus = &bus;
    setup.baud = options.baud;
    setup.clock.start();
    if (options.trace) {
        setup.trace = trace;
    }
    const StopSignals stopSignals;
    std::unique_ptr<cnet::Capture> capture;
    if (!openCapture(options, capture)) {
        return kExitCannotOpen;
    }
    setup.capture = capture.get();
    Servers servers;
    if (!listen(options, setup, servers)) {
        return kExitCannotOpen;
    }
    PtyServer pty(setup);
    if (options.ptyLink && !pty.open(*options.ptyLink)) {
        return fail(kExitCannotOpen, pty.errorString());
    }
    QString places;
    for (const auto &server : servers) {
        places += QString::fromLatin1("listening on %1\n").arg(server->address());
    }
    if (options.ptyLink) {
        places += QString::fromLatin1("serving at %1\n").arg(pty.device());
    }
    // Nobody can connect to a port that is not announced.
    if (const int code = say(places)) {
        return code;
    }
    return runUntilSignal(capture.get());
}

} // namespace

int main(int argc, char **argv)
{
    keepStandardStreams();
    // Use Qt's own event loop. GLib's makes two system calls for each event.
    qputenv("QT_NO_GLIB", "1");
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QLatin1String("cnet-plc"));
    const Parsed<Options> read = readOptions(QCoreApplication::arguments());
    if (const TextError *error = std::get_if<TextError>(&read)) {
        return fail(kExitUsage, error->message);
    }
    const Options &options = std::get<Options>(read);
    if (options.help) {
        return say(helpText());
    }
    if (options.version) {
        return say(QLatin1String("cnet-plc " CNET_PLC_VERSION "\n"));
    }
    return serve(options);
}
