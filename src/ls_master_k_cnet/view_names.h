#pragma once

#include <QtCore/QString>

/// The names under which a host may see one storage unit: its bits, itself, and wider values.

enum ViewSuffix {
    kBitView,    ///< "_bit"
    kByteView,   ///< "_B"
    kWordView,   ///< "_W"
    kDoubleView, ///< "_D"
    kPlainView,  ///< the letter alone: contacts, 32-bit words
    kViewCount
};

/// The names for one register letter: for "D", these are "D_bit", "D_B", "D_W", "D_D" and "D".
struct ViewNames
{
    QString letter;
    QString names[kViewCount];
};

/// Makes the names for any letter. Any thread.
ViewNames makeViewNames(const QString &letter);

/// @return  the names for a letter of `REG_LIST`, made only once; null for any other. Any thread.
const ViewNames *knownViewNames(const QString &letter);
