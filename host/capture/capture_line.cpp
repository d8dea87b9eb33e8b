#include "host/capture/capture_line.h"

namespace cnet {

CaptureLine::CaptureLine(Capture &capture, const QString &name)
    : m_capture(capture)
{
    m_interface.name = name;
    m_capture.addSource(this);
}

CaptureLine::~CaptureLine()
{
    flush(CaptureDirection::Received);
    flush(CaptureDirection::Sent);
    m_capture.removeSource(this);
}

void CaptureLine::add(CaptureDirection direction, const QByteArray &bytes, const Remark &remark)
{
    if (!m_capture.isRunning()) {
        return;
    }
    const qint64 nowNs = m_capture.steadyNs();
    m_capture.flushStale(nowNs);
    Way &its = way(direction);
    its.lastByteNs = nowNs;
    for (const QByteArray &frame : its.cutter.add(bytes)) {
        m_capture.record(m_interface, direction, nowNs, frame, remark ? remark(frame) : QString());
    }
}

void CaptureLine::flush(CaptureDirection direction, const QString &remark)
{
    Way &its = way(direction);
    if (!its.cutter.isEmpty()) {
        m_capture.record(m_interface, direction, its.lastByteNs, its.cutter.takeRest(), remark);
    }
}

void CaptureLine::flushOlderThan(qint64 steadyNs)
{
    for (const CaptureDirection direction : {CaptureDirection::Received, CaptureDirection::Sent}) {
        if (way(direction).lastByteNs < steadyNs) {
            flush(direction);
        }
    }
}

} // namespace cnet
