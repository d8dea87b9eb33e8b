#pragma once

#include <QtCore/QString>

/// What the address checks return.
enum AddressCheck {
    kAddressValid = 0,
    kAddressWrongKind = 1,   ///< a bit register used as words, or the reverse
    kAddressOutOfRange = 2,  ///< below the lowest address, or running past the highest
    kAddressUnknownName = 3, ///< register not listed
    kAddressMalformed = 4,   ///< the text does not fit the register's format
    kAddressWrongType = 5,   ///< data type not allowed for a 32-bit register
    kAddressReadOnly = 6     ///< writing to a read-only register
};

/// `intf_checkAddr` on a given row. Pure; any thread.
///
/// @param row  the six columns of the register's row, null for a register that is not listed
int checkAddressInRow(const QString *row, const QString &regName, const QString &addrText,
                      int &addr, int dataType, int wordCount, int accessMode);
