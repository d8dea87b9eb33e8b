#pragma once

#include "plc/memory/point.h"
#include "plc/wire/wire.h"

#include <QByteArray>

#include <optional>
#include <variant>
#include <vector>

namespace plc {

/** The header fields of a request frame, which every answer repeats, and the rest as it came. */
struct Envelope
{
    int station = 0;
    char command = 'r'; ///< any letter, as received
    QByteArray type;    ///< two characters, as received
    QByteArray body;    ///< everything between the type and EOT
};

/** What a request wants done. */
enum class Service { ReadSingle, ReadBlock, WriteSingle, WriteBlock };

/** One value or, for the block services, consecutive words. */
struct Item
{
    Point first;
    int count = 1;
    std::vector<quint16> data; ///< what to write; empty when reading
};

/** One parsed request. */
struct Request
{
    Service service = Service::ReadSingle;
    std::vector<Item> items;
};

/**
 * Reads the header of a frame that starts with ENQ and ends with EOT or with the block check.
 * @return nothing if a PLC would not answer: the frame is incomplete or its block check is wrong.
 */
std::optional<Envelope> openEnvelope(const QByteArray &frame);

/**
 * Parses the request. Fields are checked from left to right, and the first error is returned.
 * Whether the addresses exist is not checked here.
 */
std::variant<Request, Refusal> readRequest(const Envelope &envelope);

} // namespace plc
