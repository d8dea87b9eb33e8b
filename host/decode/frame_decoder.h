#pragma once

#include "host/decode/decoded_frame.h"

#include <QHash>

namespace cnet {

/**
 * Explains a frame field by field.
 *
 * @param bytes from the head character to the block check; any bytes will do
 * @param request what an answer belongs to, which says which addresses its values have and how
 * many of them there are; nullptr where it is not known
 */
DecodedFrame decodeFrame(const QByteArray &bytes, const DecodedFrame *request = nullptr,
                         Detail detail = Detail::Fields);

/** Bytes of a positive answer to a request; of one that is not good, those of the longest frame. */
int answerLength(const DecodedFrame &request);

/** Explains the frames of a line one after the other, each answer by the request before it. */
class FrameDecoder
{
public:
    /** @param detail of what next() returns */
    explicit FrameDecoder(Detail detail = Detail::Fields)
        : m_detail(detail)
    {}

    /** The next frame that went over the line, in either direction. */
    DecodedFrame next(const QByteArray &bytes);

private:
    const DecodedFrame *requestOf(const QByteArray &answer) const;
    void noteRequest(const DecodedFrame &request);

    Detail m_detail;
    QHash<int, DecodedFrame> m_open; ///< requests without an answer, by station
    int m_lastStation = -1;          ///< of the last request, while it has no answer
};

} // namespace cnet
