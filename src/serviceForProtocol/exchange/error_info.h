#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// Describes the request in flight and the size of its answer: station, "#", register, address,
/// (count), (bytes), such as "1#D_W100(2)(7)". Exchange thread.
///
/// @return  the description; empty if no frame is in flight or its register is unknown
QString getErrorInfo(const QByteArray &answer);

/// @return  an address as displayed by the panel: word.bit for a "_bit" name, else the number in
/// the
///          radix of the format's letter (D decimal, O octal, H hexadecimal)
QString addressText(int address, const QString &regName, const QString &format);
