#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/register_row.h"

/// Implements `intf_getData` for a register of the given widths: copies the current values to
/// `buffer`, at most 1024 bytes, and creates missing units. Panel thread.
void readValues(const RegisterWidths &widths, int stationNo, const QString &letter, int startAddr,
                int count, unsigned char *buffer);
