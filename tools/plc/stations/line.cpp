#include "plc/stations/line.h"

#include "plc/wire/request.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace plc {

namespace {

/** Start bit, eight data bits and stop bit, in microseconds times the bits per second. */
constexpr qint64 kMicrosecondsPerByte = 10 * 1000000LL;

} // namespace

Line::Line(Bus &bus)
    : m_bus(bus)
{}

void Line::setObserver(std::function<void(const Exchange &)> observer)
{
    m_observer = std::move(observer);
}

std::vector<Chunk> Line::receive(const QByteArray &bytes, qint64 nowMs)
{
    m_bus.beginReplay(nowMs);
    m_bus.advance(nowMs);
    std::vector<Chunk> all;
    for (const QByteArray &frame : m_finder.take(bytes)) {
        std::vector<Chunk> chunks = serve(frame, nowMs);
        std::move(chunks.begin(), chunks.end(), std::back_inserter(all));
    }
    return all;
}

const std::vector<Chunk> *Line::replayed(const QByteArray &frame)
{
    const auto *const chunks =
        m_bus.replay() ? m_bus.replay()->answer(frame, m_asked.value(frame)) : nullptr;
    if (chunks) {
        ++m_asked[frame];
    }
    return chunks;
}

// A replay has the faults of its capture, and its pace.
std::vector<Chunk> Line::serve(const QByteArray &frame, qint64 nowMs)
{
    Exchange exchange;
    exchange.nowMs = nowMs;
    exchange.request = frame;
    const std::optional<Envelope> envelope = openEnvelope(frame);
    Unit *const unit = envelope ? m_bus.find(envelope->station) : nullptr;
    if (const std::vector<Chunk> *const chunks = replayed(frame)) {
        exchange.answer = joined(*chunks);
        exchange.sent = *chunks;
    } else if (unit) {
        exchange.fired = unit->faults.draw();
        const auto refuse = Faults::find(exchange.fired, FaultKind::Refuse);
        if (Faults::find(exchange.fired, FaultKind::Silence)) {
            exchange.answer.clear();
        } else if (refuse) {
            exchange.answer = unit->station.refusal(frame, static_cast<quint16>(refuse->low));
        } else {
            exchange.answer = unit->station.answer(frame);
        }
        exchange.sent = paced(unit->faults.disturb(exchange.fired, frame, exchange.answer),
                              static_cast<int>(frame.size()));
    }
    if (m_observer) {
        m_observer(exchange);
    }
    return exchange.sent;
}

std::vector<Chunk> Line::paced(const std::vector<Chunk> &chunks, int requestBytes) const
{
    if (m_baud <= 0) {
        return chunks;
    }
    const qint64 byteUs = std::max<qint64>(kMicrosecondsPerByte / m_baud, 1);
    std::vector<Chunk> slow;
    // The line is busy until lineUs; a byte has arrived when its stop bit has.
    qint64 lineUs = requestBytes * byteUs;
    qint64 sentMs = 0;
    for (const Chunk &chunk : chunks) {
        lineUs += chunk.delayMs * 1000LL;
        for (const char byte : chunk.bytes) {
            lineUs += byteUs;
            const qint64 atMs = (lineUs + 999) / 1000;
            if (slow.empty() || atMs > sentMs) {
                slow.push_back({static_cast<int>(atMs - sentMs), {}});
                sentMs = atMs;
            }
            slow.back().bytes += byte;
        }
    }
    return slow;
}

QByteArray joined(const std::vector<Chunk> &chunks)
{
    QByteArray bytes;
    for (const Chunk &chunk : chunks) {
        bytes += chunk.bytes;
    }
    return bytes;
}

int duration(const std::vector<Chunk> &chunks)
{
    int total = 0;
    for (const Chunk &chunk : chunks) {
        total += chunk.delayMs;
    }
    return total;
}

} // namespace plc
