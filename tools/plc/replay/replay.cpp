#include "plc/replay/replay.h"

#include "plc/wire/wire.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace plc {

namespace {

constexpr double kNsPerMs = 1000000;

qint64 msOf(qint64 ns, double speed)
{
    return static_cast<qint64>(static_cast<double>(std::max<qint64>(ns, 0)) / kNsPerMs / speed);
}

/** The memory as a capture tells of it, step by step. */
class MemoryBook
{
public:
    MemoryBook(std::vector<RecordedValue> &first, std::vector<RecordedChange> &changes)
        : m_first(first)
        , m_changes(changes)
    {}

    void note(qint64 atMs, const RecordedValue &value)
    {
        const auto place = std::make_tuple(value.station, value.point.device, value.point.kind,
                                           value.point.address);
        const auto [known, isNew] = m_values.insert({place, value.value});
        if (isNew) {
            m_first.push_back(value);
        } else if (known->second != value.value) {
            known->second = value.value;
            m_changes.push_back({atMs, value});
        }
    }

private:
    std::vector<RecordedValue> &m_first;
    std::vector<RecordedChange> &m_changes;
    std::map<std::tuple<int, char, PointKind, int>, quint16> m_values;
};

} // namespace

// Of a last request that nothing followed it is not known what came for it, so it counts only where
// there is nothing better.
Replay::Replay(const cnet::RecordedLine &line, double speed)
    : m_speed(speed)
{
    MemoryBook book(m_firstValues, m_changes);
    std::set<int> stations;
    for (const cnet::RecordedExchange &exchange : line.exchanges) {
        if (!exchange.isOpen || !m_answers.contains(exchange.request.bytes)) {
            m_answers[exchange.request.bytes].push_back(chunksOf(exchange));
        }
        for (const cnet::RecordedFrame &frame : exchange.answers) {
            const qint64 atNs = frame.timeNs - line.exchanges.front().request.timeNs;
            const int station = exchange.request.bytes.mid(1, 2).toInt(nullptr, 16);
            if (station <= kMaxStation && isAnswerTo(exchange.request.bytes, frame.bytes)) {
                stations.insert(station);
            }
            for (const RecordedValue &value : recordedValues(exchange.request.bytes, frame.bytes)) {
                book.note(msOf(atNs, speed), value);
            }
        }
    }
    m_stations.assign(stations.cbegin(), stations.cend());
}

std::vector<Chunk> Replay::chunksOf(const cnet::RecordedExchange &exchange) const
{
    std::vector<Chunk> chunks;
    qint64 lastNs = exchange.request.timeNs;
    int bytes = 0;
    for (const cnet::RecordedFrame &frame : exchange.answers) {
        const qint64 pauseMs = msOf(frame.timeNs - lastNs, m_speed);
        const auto delayMs = static_cast<int>(std::min<qint64>(pauseMs, kLongestPauseMs));
        bytes += static_cast<int>(frame.bytes.size());
        if (bytes > kMostBytes) {
            break;
        }
        chunks.push_back({delayMs, frame.bytes});
        lastNs = frame.timeNs;
    }
    return chunks;
}

const std::vector<Chunk> *Replay::answer(const QByteArray &request, int time) const
{
    const auto found = m_answers.constFind(request);
    if (found == m_answers.cend()) {
        return nullptr;
    }
    const auto last = static_cast<int>(found->size()) - 1;
    return &found->at(static_cast<std::size_t>(std::min(time, last)));
}

} // namespace plc
