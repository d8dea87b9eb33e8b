#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// Describes the request in flight and the size of its answer: "station#register address(count)
/// (bytes)" without blanks, such as "1#D_W100(2)(7)". Exchange thread.
///
/// @return  an empty text when no frame is in flight or its register is not listed
QString getErrorInfo(const QByteArray &answer);

/// @return  an address as the panel shows it: word.bit for a "_bit" name, else the number in the
///          radix of the format's letter (D decimal, O octal, H hexadecimal)
QString addressText(int address, const QString &regName, const QString &format);
