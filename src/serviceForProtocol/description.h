#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

/// Appends the five texts with which `intf_getRegDiscription` describes a register.
///
/// @param row  the six columns of the register's row; widths and access kinds that no register has
///             today are described as well
void appendRowDescription(const QString *row, QList<QString> &out);
