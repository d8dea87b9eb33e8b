#pragma once

#include "view/frames/trace/frame_log.h"

#include "host/recording/recording.h"

namespace cnet::view {

/** More exchanges of a file than this are not shown. */
constexpr int kMostOpened = 200000;

/**
 * Makes the bytes of a pcapng file with the frames of a trace, each with a comment that says what
 * it means: of many rows it takes a while, so they are taken some at a time.
 */
class CaptureMaker
{
public:
    /** @param log as it is now @param lineName for people */
    CaptureMaker(FrameLog log, const QString &lineName);

    /** Takes at most so many rows more. @return false: content() has all of them */
    bool take(int rows);

    const QByteArray &content() const { return m_content; }

private:
    FrameLog m_log;
    qint64 m_next; ///< number of a row
    QByteArray m_content;
};

/** Rows of which a capture has a packet. */
int framesOf(const FrameLog &log);

/** The exchanges of a file as a trace, at most kMostOpened. */
FrameLog logOf(const RecordedLine &line);

} // namespace cnet::view
