#include "plc/wire/frame_finder.h"

#include "plc/wire/wire.h"

namespace plc {

namespace {}

std::vector<QByteArray> FrameFinder::take(const QByteArray &bytes)
{
    std::vector<QByteArray> frames;
    for (const char byte : bytes) {
        if (add(byte)) {
            frames.push_back(m_frame);
            m_frame.clear();
        }
    }
    return frames;
}

bool FrameFinder::add(char byte)
{
    if (byte == kEnq) {
        m_frame.clear();
        m_checkBytesMissing = 0;
    } else if (m_frame.isEmpty()) {
        return false;
    } else if (m_frame.size() == kMaxFrameBytes) {
        m_frame.clear();
        m_checkBytesMissing = 0;
        return false;
    }
    m_frame += byte;
    if (m_checkBytesMissing > 0) {
        --m_checkBytesMissing;
        return m_checkBytesMissing == 0;
    }
    if (byte != kEot) {
        return false;
    }
    if (m_frame.size() > kCommandPosition && wantsBlockCheck(m_frame[kCommandPosition])) {
        m_checkBytesMissing = kBlockCheckBytes;
        return false;
    }
    return true;
}

} // namespace plc
