#pragma once

#include <QtCore/QString>

/// The tables that make this driver speak MASTER-K Cnet: register names, address formats and
/// limits, and device letters. They are constants, constructed before `driver` and destroyed after
/// it, and may be read from any thread. Numbers are decimal text, converted when read.

/// A register index is the position of a name in `REG_LIST`. The range table has a spare row, used
/// for unknown names by every look-up that does not check first.
enum { kRegisterCount = 16, kSpareRow = 16, kRowCount = 17 };

/// Columns of `ADDRESS_RANGE_PRO`.
enum RangeColumn {
    kFormatColumn,  ///< "DDDD" plain number (D decimal, O octal, H hexadecimal), "DDD.dd" word.bit
    kLowestColumn,  ///< lowest address, in the row's own format
    kHighestColumn, ///< highest address, in the row's own format
    kUnitWidthColumn, ///< bits of one address unit: "1" for bit registers, "16" for word registers
    kAccessColumn,    ///< "RW", "R" or "W"
    kWordWidthColumn, ///< bits of the PLC word that contains a unit; "1" for contacts
    kColumnCount
};

extern const QString PROCOTOL_DEFALT_COM_PAR;   ///< baud rate, data bits, parity, stop bits
extern const QString PROCOTOL_DEFALT_IP_PAR;    ///< IPv4 address and port
extern const QString PROCOTOL_NAME;             ///< the driver's name
extern const QString PROCOTOL_VERSION;          ///< version of the interface
extern const QString PROCOTOL_PAR_HMI_SET_MODE; ///< property page of the host

extern const QString REG_LIST[kRegisterCount];
extern const QString ADDRESS_RANGE_PRO[kRowCount][kColumnCount];
extern const QString ADDRESS_R_COMMAND[kRegisterCount]; ///< device letters of a read request
extern const QString ADDRESS_W_COMMAND[kRegisterCount]; ///< device letters of a write request
