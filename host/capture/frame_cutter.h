#pragma once

#include <QByteArray>

#include <vector>

namespace cnet {

/**
 * Cuts the bytes of one direction of a line into frames, each of which becomes a packet: a device
 * hands a frame over in any number of parts. Nothing is lost; what belongs to no frame comes out as
 * it is, between the frames.
 */
class FrameCutter
{
public:
    /** More than any frame has. What goes on without end comes out in parts of this size. */
    static constexpr int kLongest = 1024;

    /** @return what these bytes complete, in order; none of them is empty */
    std::vector<QByteArray> add(const QByteArray &bytes);

    /** What is not complete yet. Nothing is left behind. */
    QByteArray takeRest();

    bool isEmpty() const { return m_bytes.isEmpty(); }

private:
    void addByte(char byte, std::vector<QByteArray> &done);
    bool inFrame() const;
    bool endsFrame(char byte);
    void cut(std::vector<QByteArray> &done);

    QByteArray m_bytes;
    int m_checkMissing = 0; ///< characters of the block check that are to come
};

} // namespace cnet
