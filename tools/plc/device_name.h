#pragma once

#include "point.h"
#include "wire.h"

#include <QByteArray>

#include <variant>

namespace plc {

/**
 * Reads a name as it stands in a frame: "%DW0100", "%MX00001A" (bit 10 of word 1), "%TX000012".
 *
 * @param name all its characters, with the "%"
 * @return the value it names, which need not exist (a number too large for any device is cut to one
 * that no device has), or why the PLC refuses it.
 */
std::variant<Point, Refusal> readDeviceName(const QByteArray &name);

/** The data type of a name: contacts are bits on the wire. */
constexpr bool isBitType(PointKind kind)
{
    return kind != PointKind::Word;
}

} // namespace plc
