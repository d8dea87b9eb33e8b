#pragma once

#include <QByteArray>

#include <vector>

namespace plc {

/**
 * Finds request frames in what comes over a line, however it is divided.
 *
 * A frame begins with ENQ and ends with EOT, or two characters behind it where a lower-case command
 * asks for a block check. Every ENQ begins anew, so one bad frame costs no more than itself. What
 * is longer than a PLC's buffer is dropped up to the next ENQ; never more than one frame is held.
 */
class FrameFinder
{
public:
    /** @return the frames that these bytes complete, in order. */
    std::vector<QByteArray> take(const QByteArray &bytes);

    /** Bytes of a frame that has begun; at most 256. */
    int pending() const { return static_cast<int>(m_frame.size()); }

private:
    bool add(char byte);

    QByteArray m_frame;
    int m_checkBytesMissing = 0; ///< more than 0: EOT was seen and a block check belongs to it
};

} // namespace plc
