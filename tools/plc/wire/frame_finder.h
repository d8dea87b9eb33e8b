#pragma once

#include <QByteArray>

#include <vector>

namespace plc {

/**
 * Finds request frames in a stream of bytes, however it is split.
 *
 * A frame starts with ENQ. It ends with EOT or, for lower-case commands, with the two characters of
 * the block check behind it. Every ENQ starts a new frame, so a bad frame never spoils the next
 * one. A frame longer than a PLC's buffer is dropped up to the next ENQ.
 */
class FrameFinder
{
public:
    /** @return the frames completed by these bytes, in order. */
    std::vector<QByteArray> take(const QByteArray &bytes);

    /** Bytes of the frame that is not complete yet; at most 256. */
    int pending() const { return static_cast<int>(m_frame.size()); }

private:
    bool add(char byte);

    QByteArray m_frame;
    int m_checkBytesMissing = 0; ///< above 0: EOT was seen, the block check is incomplete
};

} // namespace plc
