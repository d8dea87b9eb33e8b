#pragma once

#include "host/scan/scan_result.h"

#include <QByteArray>

namespace cnet::panel {

/** A station and its registers, a line each. @param link its name, with the settings that fit */
QByteArray foundText(const FoundStation &found, const QString &link);

/** The same as an object on one line. */
QByteArray foundJson(const FoundStation &found, const QString &link);

} // namespace cnet::panel
