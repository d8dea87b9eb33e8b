#pragma once

#include "point.h"
#include "wire.h"

#include <QByteArray>

#include <optional>
#include <variant>
#include <vector>

namespace plc {

/** The outer fields of a request frame, which every answer repeats. */
struct Envelope
{
    int station = 0;
    char command = 'r'; ///< any letter, as received
    QByteArray type;    ///< two characters, as received
    QByteArray body;    ///< what lies between the type and EOT
};

enum class Service { ReadSingle, ReadBlock, WriteSingle, WriteBlock };

/** One value or, for the block services, one row of words. */
struct Item
{
    Point first;
    int count = 1;
    std::vector<quint16> data; ///< what to write; empty when reading
};

struct Request
{
    Service service = Service::ReadSingle;
    std::vector<Item> items;
};

/**
 * Opens a frame that runs from ENQ to EOT or to its block check.
 * @return nothing where a PLC stays silent: the frame is not whole or its block check is wrong.
 */
std::optional<Envelope> openEnvelope(const QByteArray &frame);

/**
 * Reads what is asked for. Fields are judged from left to right, and the first fault is the answer;
 * whether the addresses exist is not judged here.
 */
std::variant<Request, Refusal> readRequest(const Envelope &envelope);

} // namespace plc
