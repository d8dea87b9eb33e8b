#pragma once

#include "host/capture/capture.h"
#include "host/link/link_address.h"
#include "host/session_options.h"

#include <QCommandLineParser>
#include <QString>

#include <memory>
#include <optional>

namespace plc {
class Replay;
}

namespace cnet::panel {

/** What every command that talks to a PLC is told on the command line. */
struct LinkSettings
{
    std::optional<LinkAddress> link;           ///< nothing: the simulated PLC
    std::shared_ptr<const plc::Replay> replay; ///< a capture in the place of a PLC; null: none
    QString replayName;                        ///< of the capture
    int station = 1;                           ///< of items that name none
    SessionOptions session;
    bool trace = false;
    QString statsFile;                ///< where the session's numbers are stored; empty: nowhere
    std::shared_ptr<Capture> capture; ///< opened; null: none
};

/** Whether a command may do without --link. */
enum class LinkNeed {
    Optional, ///< without it the simulated PLC inside the program is used
    Required, ///< a write must not end up in the simulation unnoticed
};

/** Adds --driver. */
void addDriverOption(QCommandLineParser &parser);

/** Adds those options of LinkSettings that say where the line is: for what sends frames itself. */
void addLineOptions(QCommandLineParser &parser);

/** Adds the options of LinkSettings; --interval is for what reads in rounds. */
void addLinkOptions(QCommandLineParser &parser);
void addIntervalOption(QCommandLineParser &parser);

/**
 * Reads them, and opens the output of a capture, so that the user is told at once where it cannot
 * be written.
 * @param error receives one sentence when the result is empty
 */
std::optional<LinkSettings> readLinkSettings(const QCommandLineParser &parser, LinkNeed need,
                                             QString &error);

/**
 * Reads a whole number from an option.
 *
 * @param value receives it; stays as it is where the option was not given
 * @return false, with one sentence in `error`, for anything but a number from low to high
 */
bool readNumberOption(const QCommandLineParser &parser, const QString &name, int low, int high,
                      int &value, QString &error);

} // namespace cnet::panel
