#include "shared/frame_queue.h"

#include <cstring>

#include "shared/request_copy.h"

FrameQueue::FrameQueue() noexcept
    : m_first(0)
    , m_size(0)
{
    for (Place &place : m_places) {
        place.frame = FRAME_PRO();
        place.hasValues = false;
    }
}

// Clears what the previous frame has left there, except its request.
FrameQueue::Place &FrameQueue::nextPlace()
{
    if (m_size < kCapacity) {
        ++m_size;
    }
    Place &place = m_places[placeOf(m_size - 1)];
    FRAME_PRO &frame = place.frame;
    const bool isWithin = frame.sendLen >= 0 && frame.sendLen <= kSendBufSize;
    std::memset(frame.sendBuf, 0, static_cast<size_t>(isWithin ? frame.sendLen : kSendBufSize));
    frame.sendLen = 0;
    frame.recvLen = 0;
    frame.dataPos = 0;
    frame.unitCount = 0;
    frame.spare = 0;
    return place;
}

FRAME_PRO &FrameQueue::append(const VARIABLE &item)
{
    Place &place = nextPlace();
    place.frame.var = item;
    place.hasValues = true;
    return place.frame;
}

FRAME_PRO &FrameQueue::appendRead(const VARIABLE &item)
{
    Place &place = nextPlace();
    VARIABLE &var = place.frame.var;
    if (place.hasValues) {
        std::memset(var.data, 0, sizeof var.data);
        place.hasValues = false;
    }
    copyRange(var, item);
    return place.frame;
}

void FrameQueue::appendBlank()
{
    append(VARIABLE());
}

void FrameQueue::removeFirst()
{
    if (m_size > 0) {
        m_first = placeOf(1);
        --m_size;
    }
    if (m_size == 0) {
        m_first = 0;
    }
}

void FrameQueue::clear()
{
    m_first = 0;
    m_size = 0;
}
