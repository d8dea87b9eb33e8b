#pragma once

#include "host/address/register_info.h"

#include <QByteArray>
#include <QString>

namespace cnet {

/** "%DW00100" as a frame has it, taken apart. */
struct DeviceName
{
    RegisterInfo reg; ///< name, width and form; its limits are those of no CPU
    int address = 0;  ///< word * 16 + bit in the word.bit form
    QString fault;    ///< why it is none; empty: it is one
    int faultAt = -1; ///< of the character that is wrong, from the "%"
};

/** Reads the name of a word, a bit or a contact, as a PLC does. */
DeviceName readDeviceName(const QByteArray &text);

} // namespace cnet
