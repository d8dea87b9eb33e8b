#pragma once

#include "host/wire/block_check.h"
#include "host/wire/characters.h"

#include <QByteArray>

namespace cnet {

inline QByteArray checkedFrame(const QByteArray &frame)
{
    return frame + blockCheck(frame, static_cast<int>(frame.size()));
}

/** ENQ, "01rSB08%DW0010001", EOT and the block check. */
inline QByteArray requestFrame(const QByteArray &text)
{
    return checkedFrame(kEnq + text + kEot);
}

/** ACK, "01rSB01021234", ETX and the block check. */
inline QByteArray answerFrame(const QByteArray &text)
{
    return checkedFrame(kAck + text + kEtx);
}

/** NAK, "01rSB1132", ETX and the block check. */
inline QByteArray refusalFrame(const QByteArray &text)
{
    return checkedFrame(kNak + text + kEtx);
}

/** What stands between the head of a frame and its tail character. */
inline QByteArray textOf(const QByteArray &frame)
{
    return frame.mid(1, frame.size() - 2 - kBlockCheckLength);
}

} // namespace cnet
