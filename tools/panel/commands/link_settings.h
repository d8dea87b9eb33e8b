#pragma once

#include "host/link/link_address.h"

#include <QCommandLineParser>
#include <QString>

#include <optional>

namespace cnet::panel {

/** What every command that talks to a PLC is told on the command line. */
struct LinkSettings
{
    LinkAddress link;
    int station = 1;     ///< of items that name none
    int blockWords = 60; ///< words of a block read
    int attempts = 3;    ///< how often a request is sent before it is given up
    int timeoutMs = 0;   ///< 0: computed from the line's speed and the answer's length
    int intervalMs = -1; ///< pause between rounds; negative: what suits the link
    bool trace = false;
};

/** Adds --driver. */
void addDriverOption(QCommandLineParser &parser);

/** Adds the options of LinkSettings. */
void addLinkOptions(QCommandLineParser &parser);

/** @param error receives one sentence when the result is empty */
std::optional<LinkSettings> readLinkSettings(const QCommandLineParser &parser, QString &error);

/**
 * Reads a whole number from an option.
 *
 * @param value receives it; stays as it is where the option was not given
 * @return false, with one sentence in `error`, for anything else than a number from low to high
 */
bool readNumberOption(const QCommandLineParser &parser, const QString &name, int low, int high,
                      int &value, QString &error);

} // namespace cnet::panel
