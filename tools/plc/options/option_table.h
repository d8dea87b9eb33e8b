#pragma once

#include <QCommandLineParser>

namespace plc {

/** Declares all options with their help. */
void addOptions(QCommandLineParser &parser);

/** What --help prints. */
QString helpText();

} // namespace plc
