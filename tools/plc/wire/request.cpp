#include "plc/wire/request.h"

#include "plc/wire/device_name.h"

#include <cctype>

namespace plc {

namespace {

// ENQ st(2) command type(2) EOT
constexpr int kEnvelopeBytes = 7;
constexpr int kBodyPosition = 6;
constexpr int kBitDigits = 2;
constexpr int kWordDigits = 4;

std::optional<Service> serviceOf(const Envelope &envelope)
{
    const bool read = envelope.command == 'r' || envelope.command == 'R';
    const bool write = envelope.command == 'w' || envelope.command == 'W';
    if (!read && !write) {
        return std::nullopt;
    }
    if (envelope.type == "SS") {
        return read ? Service::ReadSingle : Service::WriteSingle;
    }
    if (envelope.type == "SB") {
        return read ? Service::ReadBlock : Service::WriteBlock;
    }
    return std::nullopt;
}

/** Name length and name. */
std::optional<Refusal> readName(FieldReader &reader, Point &point)
{
    const std::optional<int> length = reader.takeHex(2);
    if (!length) {
        return Refusal::Malformed;
    }
    if (*length > kMaxNameLength) {
        return Refusal::NameTooLong;
    }
    const std::optional<QByteArray> name = reader.take(*length);
    if (!name) {
        return Refusal::Malformed;
    }
    const auto named = readDeviceName(*name);
    if (const Refusal *refusal = std::get_if<Refusal>(&named)) {
        return *refusal;
    }
    point = std::get<Point>(named);
    return std::nullopt;
}

/** One bit or word of data. */
std::optional<Refusal> readValue(FieldReader &reader, PointKind kind, std::vector<quint16> &data)
{
    const bool bit = isBitType(kind);
    const int digits = bit ? kBitDigits : kWordDigits;
    if (reader.left() < digits) {
        return Refusal::Malformed;
    }
    const std::optional<int> value = reader.takeHex(digits);
    if (!value) {
        return Refusal::NotHexadecimal;
    }
    if (bit && *value > 1) {
        return Refusal::Malformed;
    }
    data.push_back(static_cast<quint16>(*value));
    return std::nullopt;
}

/** rSS and wSS: a number of blocks, each with one value. */
std::optional<Refusal> readSingles(FieldReader &reader, Service service, std::vector<Item> &items)
{
    const std::optional<int> blocks = reader.takeHex(2);
    if (!blocks || *blocks == 0) {
        return Refusal::Malformed;
    }
    if (*blocks > kMaxBlocks) {
        return Refusal::TooManyBlocks;
    }
    for (int block = 0; block < *blocks; ++block) {
        Item item;
        if (const auto refusal = readName(reader, item.first)) {
            return refusal;
        }
        if (!items.empty() && isBitType(item.first.kind) != isBitType(items.front().first.kind)) {
            return Refusal::TypesDiffer;
        }
        if (service == Service::WriteSingle) {
            if (const auto refusal = readValue(reader, item.first.kind, item.data)) {
                return refusal;
            }
        }
        items.push_back(item);
    }
    return std::nullopt;
}

/** rSB and wSB: consecutive words. */
std::optional<Refusal> readBlock(FieldReader &reader, Service service, std::vector<Item> &items)
{
    Item item;
    if (const auto refusal = readName(reader, item.first)) {
        return refusal;
    }
    if (isBitType(item.first.kind)) {
        return Refusal::TypeNotSupported;
    }
    const std::optional<int> words = reader.takeHex(2);
    if (!words || *words == 0) {
        return Refusal::Malformed;
    }
    if (*words > kMaxWords) {
        return Refusal::TooManyWords;
    }
    item.count = *words;
    const int values = service == Service::WriteBlock ? *words : 0;
    for (int word = 0; word < values; ++word) {
        if (const auto refusal = readValue(reader, PointKind::Word, item.data)) {
            return refusal;
        }
    }
    items.push_back(item);
    return std::nullopt;
}

} // namespace

std::optional<Envelope> openEnvelope(const QByteArray &frame)
{
    const int size = static_cast<int>(frame.size());
    if (size < kEnvelopeBytes || size > kMaxFrameBytes || frame[0] != kEnq) {
        return std::nullopt;
    }
    const char command = frame[kCommandPosition];
    if (std::isalpha(static_cast<unsigned char>(command)) == 0) {
        return std::nullopt;
    }
    const int checkBytes = wantsBlockCheck(command) ? kBlockCheckBytes : 0;
    const int end = size - checkBytes;
    if (end < kEnvelopeBytes || frame[end - 1] != kEot) {
        return std::nullopt;
    }
    if (checkBytes > 0 && frame.mid(end) != blockCheck(frame.left(end))) {
        return std::nullopt;
    }
    const std::optional<int> station = FieldReader(frame.mid(1, 2)).takeHex(2);
    if (!station) {
        return std::nullopt;
    }
    return Envelope{*station, command, frame.mid(kCommandPosition + 1, 2),
                    frame.mid(kBodyPosition, end - 1 - kBodyPosition)};
}

std::variant<Request, Refusal> readRequest(const Envelope &envelope)
{
    const std::optional<Service> service = serviceOf(envelope);
    if (!service) {
        return Refusal::Malformed;
    }
    Request request;
    request.service = *service;
    FieldReader reader(envelope.body);
    const bool single = *service == Service::ReadSingle || *service == Service::WriteSingle;
    const auto refusal = single ? readSingles(reader, *service, request.items)
                                : readBlock(reader, *service, request.items);
    if (refusal) {
        return *refusal;
    }
    if (!reader.atEnd()) {
        return Refusal::ExtraCharacters;
    }
    return request;
}

} // namespace plc
