#include "plc/main/output.h"
#include "plc/main/program.h"
#include "plc/main/stop_signals.h"
#include "plc/options/option_table.h"
#include "plc/scenario/scenarios.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace plc;

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

int serve(const Options &options)
{
    const StopSignals stopSignals;
    Program program(options);
    const int code = program.open();
    return code == kExitFine ? program.run() : code;
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
    if (options.scenarioList) {
        return say(scenarioHelp().join(QLatin1Char('\n')) + QLatin1Char('\n'));
    }
    return serve(options);
}
