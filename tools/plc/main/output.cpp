#include "plc/main/output.h"

#include "plc/main/stop_signals.h"
#include "plc/setup/one_line.h"

#include <QCoreApplication>

#include <cerrno>

namespace plc {

bool print(std::FILE *file, const QByteArray &bytes)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, file) == size && std::fflush(file) == 0;
}

int fail(ExitCode code, const QString &message)
{
    print(stderr, QString::fromLatin1("cnet-plc: %1\n").arg(oneLine(message)).toLocal8Bit());
    return code;
}

int say(const QString &text)
{
    // A signal may interrupt the write: then the program was told to end, and nothing is wrong.
    if (!print(stdout, text.toLocal8Bit()) && !StopSignals::isCaught()) {
        return fail(
            kExitUsage,
            QString::fromLatin1("cannot write to standard output: %1").arg(qt_error_string(errno)));
    }
    return kExitFine;
}

} // namespace plc
