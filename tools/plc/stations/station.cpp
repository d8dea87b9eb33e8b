#include "plc/stations/station.h"

#include "plc/wire/request.h"

namespace plc {

namespace {

bool isWrite(Service service)
{
    return service == Service::WriteSingle || service == Service::WriteBlock;
}

/** Builds an answer: station, command and type of the request, text, tail, block check if wanted.
 */
QByteArray frameOf(char head, const Envelope &envelope, const QByteArray &text)
{
    // head st(2) command type(2) text ETX check(2)
    constexpr int kAroundText = 1 + 2 + 1 + 2 + 1 + kBlockCheckBytes;
    QByteArray frame;
    frame.reserve(text.size() + kAroundText); // exactly: tests keep answers in great numbers
    frame += head;
    appendHex(frame, static_cast<quint32>(envelope.station), 2);
    frame += envelope.command;
    frame += envelope.type;
    frame += text;
    frame += kEtx;
    if (wantsBlockCheck(envelope.command)) {
        frame += blockCheck(frame);
    }
    return frame;
}

QByteArray refusalFrame(const Envelope &envelope, quint16 code)
{
    return frameOf(kNak, envelope, hex(code, 4));
}

Point pointOf(const Item &item, int offset)
{
    return {item.first.device, item.first.kind, item.first.address + offset};
}

bool allowed(const Request &request, const Memory &memory)
{
    for (const Item &item : request.items) {
        if (isWrite(request.service) && item.first.device == 'F') {
            return false;
        }
        if (!memory.value(pointOf(item, 0)) || !memory.value(pointOf(item, item.count - 1))) {
            return false;
        }
    }
    return true;
}

QByteArray read(const Request &request, const Memory &memory)
{
    QByteArray text = hex(static_cast<quint32>(request.items.size()), 2);
    text.reserve(kMaxFrameBytes);
    for (const Item &item : request.items) {
        const int digits = item.first.kind == PointKind::Word ? 4 : 2;
        appendHex(text, static_cast<quint32>(item.count * digits / 2), 2);
        for (int i = 0; i < item.count; ++i) {
            appendHex(text, *memory.value(pointOf(item, i)), digits);
        }
    }
    return text;
}

void write(const Request &request, Memory &memory)
{
    for (const Item &item : request.items) {
        int offset = 0;
        for (const quint16 value : item.data) {
            memory.setValue(pointOf(item, offset), value);
            ++offset;
        }
    }
}

} // namespace

Station::Station(int number, Model model)
    : m_number(number)
    , m_memory(model)
{}

QByteArray Station::answer(const QByteArray &request)
{
    const std::optional<Envelope> envelope = openEnvelope(request);
    if (!envelope || envelope->station != m_number) {
        return {};
    }
    const auto wanted = readRequest(*envelope);
    if (const Refusal *refusal = std::get_if<Refusal>(&wanted)) {
        return refusalFrame(*envelope, static_cast<quint16>(*refusal));
    }
    const Request &good = std::get<Request>(wanted);
    if (!allowed(good, m_memory)) {
        return refusalFrame(*envelope, static_cast<quint16>(Refusal::NoSuchAddress));
    }
    if (!isWrite(good.service)) {
        return frameOf(kAck, *envelope, read(good, m_memory));
    }
    write(good, m_memory);
    return frameOf(kAck, *envelope, {});
}

QByteArray Station::refusal(const QByteArray &request, quint16 code) const
{
    const std::optional<Envelope> envelope = openEnvelope(request);
    if (!envelope || envelope->station != m_number) {
        return {};
    }
    return refusalFrame(*envelope, code);
}

} // namespace plc
