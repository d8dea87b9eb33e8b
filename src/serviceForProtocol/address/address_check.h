#pragma once

#include <QtCore/QString>

/// Implements `intf_checkAddr` for a given row. Pure; any thread.
///
/// @param row  the six columns of the register's row, null for an unknown register
/// @return     an `AddressCode`
int checkAddressInRow(const QString *row, const QString &regName, const QString &addrText,
                      int &addr, int dataType, int wordCount, int accessMode);
