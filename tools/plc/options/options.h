#pragma once

#include "host/capture/capture.h"
#include "plc/control/reply.h"
#include "plc/options/addresses.h"
#include "plc/setup/apply.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace plc {

/** Exit codes of cnet-plc. */
enum ExitCode {
    kExitFine = 0,       ///< ended by a signal or by `quit`, or after --help and --version
    kExitUsage = 2,      ///< wrong command line or file, or standard output cannot be written
    kExitCannotOpen = 3, ///< an address, a terminal, a link or a file cannot be opened or written
    kExitOutputLost = 5, ///< ended as with 0, but part of the capture is lost
};

/** The command line of cnet-plc, checked as far as possible without opening anything. */
struct Options
{
    std::vector<TcpAddress> tcp;
    std::optional<QString> ptyLink; ///< empty: a pseudo-terminal without a link
    std::vector<int> stations;      ///< may be empty with a replay, which has its own
    Model model = Model::Full;
    std::vector<Setting> settings;
    std::vector<MotionSetting> motions;
    std::vector<FaultSetting> faults;
    std::vector<ControlAddress> control;
    ReplyFormat controlFormat = ReplyFormat::Text;
    QString memoryPath; ///< empty: the memory is kept nowhere
    QString scriptPath; ///< empty: there is no script
    QString scenario;   ///< name of one that exists; empty: none
    QString replayPath; ///< empty: there is no replay
    QString replayLine; ///< of several in the capture; empty: the only one
    int baud = 0;
    quint32 seed = 1;
    bool trace = false;
    std::optional<cnet::CaptureOptions> capture;
    bool help = false;
    bool scenarioList = false; ///< asked for instead of a scenario
    bool version = false;
};

/** Reads the command line. @param arguments begin with the program's name. */
Parsed<Options> readOptions(const QStringList &arguments);

} // namespace plc
