#pragma once

#include "host/link/link_address.h"

#include <QVector>

namespace cnet {

/**
 * The settings that a Cnet line may have, with 8 data bits, the likely and quick ones first: every
 * baud rate without parity, then with it, and two stop bits last.
 */
QVector<LineSettings> likelySettings();

} // namespace cnet
