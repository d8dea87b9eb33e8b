#pragma once

#include <QByteArray>
#include <QFlags>
#include <QString>

namespace cnet::view {

enum class FrameWay { Sent, Received };

/** What a request wants; its answers are of the same kind. */
enum class FrameKind {
    Read,
    Write,
    SignOfLife, ///< the host's own: does the station answer, and is the line clear
    Other,      ///< bytes that ask for nothing known
};

constexpr int kFrameKinds = 4;

/** What is wrong with a frame, or with what should have come. */
enum class FrameFault {
    TimedOut = 1,   ///< nothing came
    Refused = 2,    ///< the station said no
    WrongCheck = 4, ///< a block check other than the bytes have
    Unusable = 8,   ///< something came that could not be used
    Late = 16,      ///< an answer after its time-out
    Repeated = 32,  ///< a request once more, since the first had no good answer
    LeftOpen = 64,  ///< a request that nobody waited for to the end
    Stray = 128,    ///< bytes came along that belong to no answer
};
Q_DECLARE_FLAGS(FrameFaults, FrameFault)
Q_DECLARE_OPERATORS_FOR_FLAGS(FrameFaults)

/** One line of a trace: a frame, or that none came. Rows are known by numbers: see FrameLog. */
struct FrameRow
{
    qint64 timeNs = 0;   ///< since 1970 in UTC; negative: nobody knows
    QByteArray bytes;    ///< empty: nothing came
    QString note;        ///< what else is known of it: why it was not used, a file's comment
    qint64 request = -1; ///< number of the request that it belongs to; its own: it is one; -1: none
    qint64 answer = -1;  ///< of a request: number of what came in time; -1: nothing yet
    qint64 late = -1;    ///< of a request: number of what came too late; -1: nothing
    double tookMs = -1;  ///< of what came: since its request was sent; negative: nobody knows
    int packet = 0;      ///< in a file, from 1; 0: of no file
    int station = -1;    ///< as it stands in the frame; -1: none
    FrameWay way = FrameWay::Sent;
    FrameKind kind = FrameKind::Other;
    bool isDoubted = false; ///< an answer that the host makes sure of: it asks once more
    FrameFaults faults;
};

/** What the bytes of a request ask for. */
FrameKind kindOfRequest(const QByteArray &frame);

/** True where an answer repeats station and command of a request, as one to it does. */
bool mayAnswer(const QByteArray &answer, const QByteArray &request);

} // namespace cnet::view
