#pragma once

#include <QByteArray>
#include <QVector>

namespace cnet {

/** Of what has no end, so many bytes are one frame. */
constexpr int kMostBytesOfFrame = 1024;

/** What is to become of bytes before the first frame and, behind blanks, between frames. */
enum class Between {
    Keep, ///< they are a frame that cannot be read; blanks and line ends alone are not
    Drop, ///< they are what a log says beside the frames
};

/**
 * Cuts bytes into frames: from a head character to the block check, or to the next head. Characters
 * that follow a frame without a blank are its own, so that they can be found wrong.
 */
QVector<QByteArray> splitFrames(const QByteArray &bytes, Between between);

/** True where the last frame among these bytes has its end and its block check. */
bool endsWithWholeFrame(const QByteArray &bytes);

} // namespace cnet
