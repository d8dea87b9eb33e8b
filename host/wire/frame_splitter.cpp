#include "host/wire/frame_splitter.h"

#include "host/wire/characters.h"

#include <algorithm>

namespace cnet {

namespace {

bool isTail(char byte)
{
    return byte == kEot || byte == kEtx;
}

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

using Position = QByteArray::const_iterator;

// Of a frame that begins here: behind its tail and what follows that without a blank.
Position endOfFrame(Position begin, Position end)
{
    const Position most = end - begin > kMostBytesOfFrame ? begin + kMostBytesOfFrame : end;
    const Position tail =
        std::find_if(begin + 1, most, [](char byte) { return isTail(byte) || isHead(byte); });
    if (tail == most || isHead(*tail)) {
        return tail;
    }
    return std::find_if(tail + 1, most, [](char byte) { return isHead(byte) || isBlank(byte); });
}

} // namespace

QVector<QByteArray> splitFrames(const QByteArray &bytes, Between between)
{
    QVector<QByteArray> frames;
    Position at = bytes.cbegin();
    while (at != bytes.cend()) {
        const bool isFrame = isHead(*at);
        Position next =
            isFrame ? endOfFrame(at, bytes.cend()) : std::find_if(at, bytes.cend(), isHead);
        if (!isFrame && next - at > kMostBytesOfFrame) {
            next = at + kMostBytesOfFrame;
        }
        const bool blank = std::all_of(at, next, isBlank);
        if (isFrame || (between == Between::Keep && !blank)) {
            frames.append(QByteArray(&*at, static_cast<int>(next - at)));
        }
        at = next;
    }
    return frames;
}

bool endsWithWholeFrame(const QByteArray &bytes)
{
    const auto tail = std::find_if(bytes.crbegin(), bytes.crend(), isTail);
    const auto head = std::find_if(bytes.crbegin(), bytes.crend(), isHead);
    if (tail == bytes.crend() || head == bytes.crend() || head < tail) {
        return false;
    }
    const auto behind = tail - bytes.crbegin();
    const auto size = head - bytes.crbegin() + 1;
    const bool checked = size > kCommandPosition && hasBlockCheck(*(head - kCommandPosition));
    return behind >= (checked ? kBlockCheckLength : 0);
}

} // namespace cnet
