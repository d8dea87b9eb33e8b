#pragma once

#include "view/frames/trace/frame_log.h"

#include "host/recording/recording.h"

namespace cnet::view {

/** More exchanges of a file than this are not shown. */
constexpr int kMostOpened = 200000;

/**
 * The bytes of a pcapng file with the frames of a trace, each with a comment that says what it
 * means. @param lineName for people
 */
QByteArray captureOf(const FrameLog &log, const QString &lineName);

/** Rows of which a capture has a packet. */
int framesOf(const FrameLog &log);

/** The exchanges of a file as a trace, at most kMostOpened. */
FrameLog logOf(const RecordedLine &line);

} // namespace cnet::view
