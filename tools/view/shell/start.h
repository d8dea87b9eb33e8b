#pragma once

#include "view/connect/connection.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace cnet::view {

/** What a start of the program is asked for. */
struct Start
{
    QString file;                         ///< a project or a tag file; empty: none
    std::optional<Connection> connection; ///< to connect to at once
    bool isDemo = true;                   ///< nothing was said: the press line that is simulated
};

/**
 * Reads the command line.
 * @param arguments with the program's name first
 * @param output receives what is to be printed: a help or version text, or what is wrong
 * @param exitCode receives what the program ends with, where the result is empty
 */
std::optional<Start> readStart(const QStringList &arguments, QString &output, int &exitCode);

} // namespace cnet::view
