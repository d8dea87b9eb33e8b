#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/register_row.h"

/// `intf_getData` for a register of the given widths: copies current values to `buffer`, at most
/// 1024 bytes, and creates the units that are missing. Panel thread.
void readValues(const RegisterWidths &widths, int stationNo, const QString &letter, int startAddr,
                int count, unsigned char *buffer);
