#pragma once

#include <QtCore/QString>

/// `intf_checkAddr` on a given row. Pure; any thread.
///
/// @param row  the six columns of the register's row, null for a register that is not listed
/// @return     an `AddressCode`
int checkAddressInRow(const QString *row, const QString &regName, const QString &addrText,
                      int &addr, int dataType, int wordCount, int accessMode);
