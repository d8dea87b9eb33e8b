#pragma once

#include "host/capture/capture.h"
#include "host/capture/frame_cutter.h"

namespace cnet {

/** One line of a capture: takes its bytes as they come, and has them written frame by frame. */
class CaptureLine : private CaptureSource
{
public:
    /** What is known of a frame beside what it says, for its comment. */
    using Remark = std::function<QString(const QByteArray &frame)>;

    /**
     * @param capture must outlive the line
     * @param name for people: "tcp 192.168.0.100:8000"
     */
    CaptureLine(Capture &capture, const QString &name);
    /** What has not become a frame is written. */
    ~CaptureLine() override;

    /**
     * Bytes went over the line, just now.
     *
     * A frame is written when it is complete and has the time of its last byte. What does not
     * become one is written when flush() says so, or when nothing has followed for a second.
     * @param remark asked for each frame that is complete now; may be empty
     */
    void add(CaptureDirection direction, const QByteArray &bytes, const Remark &remark = Remark());

    /** Writes what is there as it is: no more of it will come. @param remark may be empty */
    void flush(CaptureDirection direction, const QString &remark = QString());

private:
    /** What went one way and is not written yet. */
    struct Way
    {
        FrameCutter cutter;
        qint64 lastByteNs = 0;
    };

    Way &way(CaptureDirection direction) { return m_ways[static_cast<int>(direction)]; }
    void flushOlderThan(qint64 steadyNs) override;

    Capture &m_capture;
    CaptureInterface m_interface;
    Way m_ways[2];
};

} // namespace cnet
