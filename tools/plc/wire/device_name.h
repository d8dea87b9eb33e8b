#pragma once

#include "plc/memory/point.h"
#include "plc/wire/wire.h"

#include <QByteArray>

#include <variant>

namespace plc {

/**
 * Parses a name from a frame: "%DW0100", "%MX00001A" (bit 10 of word 1), "%TX000012".
 *
 * @param name with the "%"
 * @return the value that it names, which need not exist (very large numbers are capped, still
 * outside every device), or why the PLC refuses it.
 */
std::variant<Point, Refusal> readDeviceName(const QByteArray &name);

/** Whether the data type is bit: contacts are bits on the wire. */
constexpr bool isBitType(PointKind kind)
{
    return kind != PointKind::Word;
}

} // namespace plc
