#include "plc/faults/faults.h"

#include "plc/wire/wire.h"

#include <algorithm>

namespace plc {

namespace {

constexpr int kStationPosition = 1;
// head st(2) command: its case tells whether a block check ends the frame
// head st(2) command type(2) tail
constexpr int kShortestAnswer = 7;
/** No fault makes an answer longer than this, whatever its values. */
constexpr int kMostBytes = 4096;

int checkBytesOf(const QByteArray &answer)
{
    return wantsBlockCheck(answer[kCommandPosition]) ? kBlockCheckBytes : 0;
}

/** Ends a changed frame the way a PLC would: with its block check, if it has one. */
QByteArray withNewCheck(const QByteArray &headToTail, int checkBytes)
{
    return checkBytes > 0 ? headToTail + blockCheck(headToTail) : headToTail;
}

QByteArray withWrongCheck(QByteArray answer)
{
    if (checkBytesOf(answer) > 0) {
        char &last = answer.data()[answer.size() - 1];
        last = last == '0' ? '1' : '0';
    }
    return answer;
}

QByteArray withStation(QByteArray answer, int station)
{
    if (station < 0) {
        const int own = FieldReader(answer.mid(kStationPosition, 2)).takeHex(2).value_or(0);
        station = (own + 1) % (kMaxStation + 1);
    }
    const int checkBytes = checkBytesOf(answer);
    answer.chop(checkBytes);
    answer.replace(kStationPosition, 2, hex(static_cast<quint32>(station), 2));
    return withNewCheck(answer, checkBytes);
}

QByteArray lengthened(QByteArray answer, int length)
{
    const int checkBytes = checkBytesOf(answer);
    answer.chop(checkBytes);
    const int missing = length - checkBytes - static_cast<int>(answer.size());
    if (missing > 0) {
        answer.insert(answer.size() - 1, QByteArray(missing, '0'));
    }
    return withNewCheck(answer, checkBytes);
}

bool isFrameCharacter(char byte)
{
    return byte == kEtx || byte == kEot || byte == kEnq || byte == kAck || byte == kNak;
}

} // namespace

Fault usualFault(FaultKind kind)
{
    Fault fault;
    fault.kind = kind;
    switch (kind) {
    case FaultKind::Delay:
        fault.low = fault.high = 500;
        break;
    case FaultKind::NoiseBefore:
    case FaultKind::NoiseAfter:
        fault.low = 1;
        fault.high = 8;
        break;
    case FaultKind::Split:
    case FaultKind::Repeat:
        fault.low = fault.high = 1;
        break;
    case FaultKind::WrongStation:
    case FaultKind::Truncate:
        fault.low = fault.high = -1;
        break;
    case FaultKind::Refuse:
        fault.low = fault.high = static_cast<int>(Refusal::NoSuchAddress);
        break;
    case FaultKind::Oversize:
        fault.low = fault.high = 300;
        break;
    case FaultKind::Silence:
    case FaultKind::WrongCheck:
    case FaultKind::Echo:
        break;
    }
    return fault;
}

Faults::Faults(quint32 seed)
    : m_random(seed)
{}

void Faults::setSeed(quint32 seed)
{
    m_random.seed(seed);
}

int Faults::between(int low, int high)
{
    if (high <= low) {
        return low;
    }
    // Not std::uniform_int_distribution: its results differ between standard libraries.
    const auto span = static_cast<quint64>(static_cast<qint64>(high) - low) + 1;
    return static_cast<int>(low + static_cast<qint64>(m_random() % span));
}

QByteArray Faults::noise(int count)
{
    QByteArray bytes;
    while (bytes.size() < std::min(count, kMostBytes)) {
        const char byte = static_cast<char>(between(0, 255));
        if (!isFrameCharacter(byte)) {
            bytes += byte;
        }
    }
    return bytes;
}

void Faults::add(const Fault &fault)
{
    m_faults.erase(std::remove_if(m_faults.begin(), m_faults.end(),
                                  [](const Fault &old) { return old.times == 0; }),
                   m_faults.end());
    m_faults.push_back(fault);
}

std::vector<Fault> Faults::draw()
{
    std::vector<Fault> fired;
    for (Fault &fault : m_faults) {
        if (fault.times == 0 || between(0, 99) >= fault.percent) {
            continue;
        }
        if (fault.times > 0) {
            --fault.times;
        }
        fired.push_back(fault);
    }
    return fired;
}

std::optional<Fault> Faults::find(const std::vector<Fault> &fired, FaultKind kind)
{
    const auto it = std::find_if(fired.begin(), fired.end(),
                                 [kind](const Fault &fault) { return fault.kind == kind; });
    return it == fired.end() ? std::nullopt : std::optional<Fault>(*it);
}

QByteArray Faults::disturbFrame(const std::vector<Fault> &fired, const QByteArray &answer)
{
    QByteArray frame = answer;
    if (const auto fault = find(fired, FaultKind::WrongStation)) {
        frame = withStation(frame, fault->low);
    }
    if (const auto fault = find(fired, FaultKind::Oversize)) {
        frame = lengthened(frame, std::min(between(fault->low, fault->high), kMostBytes));
    }
    if (find(fired, FaultKind::WrongCheck)) {
        frame = withWrongCheck(frame);
    }
    if (const auto fault = find(fired, FaultKind::Truncate)) {
        const int size = static_cast<int>(frame.size());
        frame =
            frame.left(fault->low < 0 ? between(0, size - 1) : between(fault->low, fault->high));
    }
    return frame;
}

// Each copy is a piece of its own: a master may have read the first before it sees the next.
std::vector<QByteArray> Faults::pieces(const std::vector<Fault> &fired, const QByteArray &answer)
{
    std::vector<QByteArray> pieces = {disturbFrame(fired, answer)};
    if (const auto fault = find(fired, FaultKind::Repeat)) {
        const int copies = std::clamp(between(fault->low, fault->high), 0, kMaxCopies);
        pieces.resize(static_cast<std::size_t>(copies) + 1, pieces.front());
    }
    if (const auto fault = find(fired, FaultKind::NoiseBefore)) {
        pieces.front().prepend(noise(between(fault->low, fault->high)));
    }
    if (const auto fault = find(fired, FaultKind::NoiseAfter)) {
        pieces.back().append(noise(between(fault->low, fault->high)));
    }
    return pieces;
}

std::vector<Chunk> Faults::disturb(const std::vector<Fault> &fired, const QByteArray &request,
                                   const QByteArray &answer)
{
    if (answer.size() < kShortestAnswer) {
        return {};
    }
    const std::vector<QByteArray> sent = pieces(fired, answer);
    const auto late = find(fired, FaultKind::Delay);
    int waitMs = late ? std::max(between(late->low, late->high), 0) : 0;

    std::vector<Chunk> chunks;
    if (find(fired, FaultKind::Echo)) {
        // The converter echoes the request, before the PLC has started to work on it.
        chunks.push_back({0, request});
    }
    const auto split = find(fired, FaultKind::Split);
    for (const QByteArray &piece : sent) {
        if (!split && !piece.isEmpty()) {
            chunks.push_back({waitMs, piece});
            waitMs = 0;
        }
        for (int i = 0; split && i < piece.size(); ++i) {
            chunks.push_back({waitMs, piece.mid(i, 1)});
            waitMs = std::max(between(split->low, split->high), 0);
        }
    }
    return chunks;
}

} // namespace plc
