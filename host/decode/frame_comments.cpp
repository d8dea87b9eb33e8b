#include "host/decode/frame_comments.h"

#include "host/decode/frame_text.h"

namespace cnet {

QString FrameComments::next(const QByteArray &bytes)
{
    return frameSummary(m_decoder.next(bytes));
}

} // namespace cnet
