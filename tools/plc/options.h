#pragma once

#include "setup_text.h"

#include <QHostAddress>
#include <QStringList>

#include <optional>
#include <vector>

namespace plc {

/** Exit codes of cnet-plc. */
enum ExitCode {
    kExitFine = 0,
    kExitUsage = 2,
    kExitCannotOpen = 3,
};

struct TcpAddress
{
    QHostAddress host;
    quint16 port = 0;
};

/** The command line of cnet-plc, checked as far as it can be without opening anything. */
struct Options
{
    std::vector<TcpAddress> tcp;
    std::optional<QString> ptyLink; ///< empty text: a pseudo-terminal without a link
    std::vector<int> stations;
    Model model = Model::Full;
    std::vector<Setting> settings;
    std::vector<RampSetting> ramps;
    std::vector<FaultSetting> faults;
    int baud = 0;
    quint32 seed = 1;
    bool trace = false;
    bool help = false;
    bool version = false;
};

/** @param arguments the program's name first, as QCoreApplication gives them. */
Parsed<Options> readOptions(const QStringList &arguments);

/** "[HOST:]PORT"; a host is an IP address or "localhost", which is also meant where none is. */
Parsed<TcpAddress> parseTcpAddress(const QString &text);

/** What --help prints. */
QString helpText();

/** Adds the stations and puts their settings, ramps and faults into effect. */
std::optional<TextError> fillBus(const Options &options, Bus &bus);

} // namespace plc
