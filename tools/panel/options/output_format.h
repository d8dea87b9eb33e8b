#pragma once

#include "panel/output/monitor_output.h"

#include <QCommandLineParser>

namespace cnet::panel {

/** Adds --format. */
void addFormatOption(QCommandLineParser &parser, const char *description);

/** @return false, with one sentence in `error`, for anything but text, json or csv */
bool readFormatOption(const QCommandLineParser &parser, OutputFormat &format, QString &error);

/** The same where there is no table, so that csv is refused, too. */
bool readTextOrJsonOption(const QCommandLineParser &parser, OutputFormat &format, QString &error);

} // namespace cnet::panel
