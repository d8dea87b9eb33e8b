#pragma once

#include "host/decode/frame_decoder.h"

namespace cnet {

/**
 * Says in one line what each frame of a line means, an answer with the addresses of its request:
 * for the comments of a capture.
 */
class FrameComments
{
public:
    /** Of the next frame that went over the line, in either direction: frameSummary(). */
    QString next(const QByteArray &bytes);

private:
    FrameDecoder m_decoder{Detail::Summary};
};

} // namespace cnet
