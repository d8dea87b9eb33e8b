#pragma once

#include "plc/memory.h"

#include <QString>
#include <QStringList>

namespace exchange {

/** The PLC's name for an address of a register: "M_bit" 35 is bit 3 of M word 2. */
plc::Point pointOf(const QString &regName, int address);

/**
 * Every word and contact in which two states of a memory differ, as "D_W 100=7" with the later
 * value. A write that went astray shows as well as one that did not arrive.
 */
QStringList memoryChanges(const plc::Memory &before, const plc::Memory &after);

} // namespace exchange
