#include "faults.h"

#include "wire.h"

#include <algorithm>

namespace plc {

namespace {

constexpr int kStationPosition = 1;
// head st(2) command: the letter that tells whether a block check ends the frame
constexpr int kCommandPosition = 3;
// head st(2) command type(2) tail
constexpr int kShortestAnswer = 7;
/** No fault sends more than this, whatever was asked for. */
constexpr int kMostBytes = 4096;

int checkBytesOf(const QByteArray &answer)
{
    return wantsBlockCheck(answer[kCommandPosition]) ? kBlockCheckBytes : 0;
}

/** Ends a changed frame as a PLC would have ended it. */
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
    // Not std::uniform_int_distribution, whose results differ from one library to the next.
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

std::vector<Fault> Faults::strike()
{
    std::vector<Fault> struck;
    for (Fault &fault : m_faults) {
        if (fault.times == 0 || between(0, 99) >= fault.percent) {
            continue;
        }
        if (fault.times > 0) {
            --fault.times;
        }
        struck.push_back(fault);
    }
    return struck;
}

std::optional<Fault> Faults::find(const std::vector<Fault> &struck, FaultKind kind)
{
    const auto it = std::find_if(struck.begin(), struck.end(),
                                 [kind](const Fault &fault) { return fault.kind == kind; });
    return it == struck.end() ? std::nullopt : std::optional<Fault>(*it);
}

QByteArray Faults::disturbFrame(const std::vector<Fault> &struck, const QByteArray &answer)
{
    QByteArray frame = answer;
    if (const auto fault = find(struck, FaultKind::WrongStation)) {
        frame = withStation(frame, fault->low);
    }
    if (const auto fault = find(struck, FaultKind::Oversize)) {
        frame = lengthened(frame, std::min(between(fault->low, fault->high), kMostBytes));
    }
    if (find(struck, FaultKind::WrongCheck)) {
        frame = withWrongCheck(frame);
    }
    if (const auto fault = find(struck, FaultKind::Truncate)) {
        const int size = static_cast<int>(frame.size());
        frame =
            frame.left(fault->low < 0 ? between(0, size - 1) : between(fault->low, fault->high));
    }
    return frame;
}

std::vector<Chunk> Faults::disturb(const std::vector<Fault> &struck, const QByteArray &request,
                                   const QByteArray &answer)
{
    if (answer.size() < kShortestAnswer) {
        return {};
    }
    QByteArray bytes = disturbFrame(struck, answer);
    if (const auto fault = find(struck, FaultKind::NoiseBefore)) {
        bytes.prepend(noise(between(fault->low, fault->high)));
    }
    if (const auto fault = find(struck, FaultKind::NoiseAfter)) {
        bytes.append(noise(between(fault->low, fault->high)));
    }
    const auto late = find(struck, FaultKind::Delay);
    const int delayMs = late ? std::max(between(late->low, late->high), 0) : 0;

    std::vector<Chunk> chunks;
    if (find(struck, FaultKind::Echo)) {
        // The echo is the converter's doing: it is there before the PLC has begun to think.
        chunks.push_back({0, request});
    }
    const auto split = find(struck, FaultKind::Split);
    if (!split) {
        if (!bytes.isEmpty()) {
            chunks.push_back({delayMs, bytes});
        }
        return chunks;
    }
    int waitMs = delayMs;
    for (const char byte : bytes) {
        chunks.push_back({waitMs, QByteArray(1, byte)});
        waitMs = std::max(between(split->low, split->high), 0);
    }
    return chunks;
}

} // namespace plc
