#include "view/frames/trace/frame_row.h"

#include "host/wire/characters.h"

namespace cnet::view {

namespace {

// Station and command with its type, behind the head.
constexpr int kAddresseeAt = 1;
constexpr int kAddresseeLength = 5;

} // namespace

FrameKind kindOfRequest(const QByteArray &frame)
{
    if (frame.size() <= kCommandPosition || frame.at(0) != kEnq) {
        return FrameKind::Other;
    }
    switch (frame.at(kCommandPosition)) {
    case 'r':
    case 'R':
        return FrameKind::Read;
    case 'w':
    case 'W':
        return FrameKind::Write;
    default:
        return FrameKind::Other;
    }
}

bool mayAnswer(const QByteArray &answer, const QByteArray &request)
{
    const int least = kAddresseeAt + kAddresseeLength;
    return answer.size() >= least && request.size() >= least && request.at(0) == kEnq &&
           (answer.at(0) == kAck || answer.at(0) == kNak) &&
           answer.mid(kAddresseeAt, kAddresseeLength) ==
               request.mid(kAddresseeAt, kAddresseeLength);
}

} // namespace cnet::view
