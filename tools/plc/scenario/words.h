#pragma once

#include "plc/memory/memory.h"

#include <QByteArray>

namespace plc {

/** Values of several data registers, the lower half first, as the PLC's own instructions do it. */
quint32 takeDouble(const Memory &memory, int address);
void putDouble(Memory &memory, int address, quint32 value);
quint64 takeQuad(const Memory &memory, int address);
void putQuad(Memory &memory, int address, quint64 value);
/** IEEE 754, single precision. */
void putFloat(Memory &memory, int address, float value);

/** Two characters a word, the first one in the low byte; what remains is filled with zeros. */
void putText(Memory &memory, int address, int words, const QByteArray &text);

/** Decimal digits, four bits each; those above 99999999 are left out. */
quint32 toBcd(quint32 value);
/** @return -1 where a digit is none. */
int fromBcd(quint16 bcd);

} // namespace plc
