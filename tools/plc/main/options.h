#pragma once

#include "host/capture/capture.h"
#include "plc/setup/apply.h"

#include <QHostAddress>
#include <QStringList>

#include <optional>
#include <vector>

namespace plc {

/** Exit codes of cnet-plc. */
enum ExitCode {
    kExitFine = 0,       ///< ended by a signal, or after --help and --version
    kExitUsage = 2,      ///< wrong command line, or standard output cannot be written
    kExitCannotOpen = 3, ///< an address, a terminal, a link or a capture cannot be opened
    kExitOutputLost = 5, ///< ended by a signal, but part of the capture is lost
};

struct TcpAddress
{
    QHostAddress host;
    quint16 port = 0;
};

/** The command line of cnet-plc, checked as far as possible without opening anything. */
struct Options
{
    std::vector<TcpAddress> tcp;
    std::optional<QString> ptyLink; ///< empty: a pseudo-terminal without a link
    std::vector<int> stations;
    Model model = Model::Full;
    std::vector<Setting> settings;
    std::vector<MotionSetting> motions;
    std::vector<FaultSetting> faults;
    int baud = 0;
    quint32 seed = 1;
    bool trace = false;
    std::optional<cnet::CaptureOptions> capture;
    bool help = false;
    bool version = false;
};

/** Reads the command line. @param arguments begin with the program's name. */
Parsed<Options> readOptions(const QStringList &arguments);

/** "[HOST:]PORT"; HOST is an IP address or "localhost", which is the default. */
Parsed<TcpAddress> parseTcpAddress(const QString &text);

/** What --help prints. */
QString helpText();

/** Adds the stations and applies the settings, motions and faults to them. */
std::optional<TextError> fillBus(const Options &options, Bus &bus);

} // namespace plc
