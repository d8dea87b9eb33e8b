#pragma once

#include <QtCore/QString>

/// The names under which a host knows what one storage unit is a part of.

enum ViewSuffix {
    kBitView,    ///< "_bit"
    kByteView,   ///< "_B"
    kWordView,   ///< "_W"
    kDoubleView, ///< "_D"
    kPlainView,  ///< the letter alone: contacts, 32-bit words
    kViewCount
};

/// The names of one register letter: of "D" they are "D_bit", "D_B", "D_W", "D_D" and "D".
struct ViewNames
{
    QString letter;
    QString names[kViewCount];
};

/// Makes the names of any letter. Any thread.
ViewNames makeViewNames(const QString &letter);

/// @return  the names of a letter of `REG_LIST`, made once; null for any other. Any thread.
const ViewNames *knownViewNames(const QString &letter);
