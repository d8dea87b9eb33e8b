#pragma once

#include "host/capture/capture.h"

#include <QCommandLineParser>

#include <optional>

namespace cnet {

/** Adds --capture and the options that say more of it, the same for each program. */
void addCaptureOptions(QCommandLineParser &parser);

/**
 * Reads them.
 *
 * @param options receives them; nothing where no capture is asked for
 * @param error receives one sentence when the result is false
 */
bool readCaptureOptions(const QCommandLineParser &parser, const QString &program,
                        std::optional<CaptureOptions> &options, QString &error);

} // namespace cnet
