#pragma once

#include "host/decode/decoded_frame.h"

#include <optional>

namespace cnet {

inline QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

/**
 * Takes the text of a frame apart from left to right and notes the fields. The first fault ends it:
 * nothing behind it can be told.
 */
class FieldCursor
{
public:
    /**
     * @param frame that the fields belong to; must outlive this object
     * @param first offset of the first character
     * @param end offset behind the last one
     */
    FieldCursor(DecodedFrame &frame, int first, int end)
        : m_frame(frame)
        , m_position(first)
        , m_end(end)
    {}

    int position() const { return m_position; }
    int left() const { return m_end - m_position; }
    bool isFine() const { return m_fine; }
    /** False where nobody will see what means() is told. */
    bool explains() const { return m_frame.detail == Detail::Fields; }

    /** Takes characters as a field. Fewer than `count` are a fault. */
    QByteArray take(int count, const char *name);

    /** Takes a number of 2 or 4 hexadecimal digits as a field; nothing where it is none. */
    std::optional<int> takeHex(int digits, const char *name);

    /** Says what the last field means. */
    void means(const QString &text);

    /** The last field is wrong. @param at offset in the frame */
    void fail(int at, const QString &text, FrameVerdict verdict = FrameVerdict::Malformed);

    /** Takes what was not looked at, up to the end, as a field without a meaning. */
    void skipRest();

private:
    int skip(int count, const char *name);

    DecodedFrame &m_frame;
    int m_position;
    int m_end;
    bool m_fine = true;
};

/** The frame's verdict becomes this one where it was a better one before. */
void judge(DecodedFrame &frame, FrameVerdict verdict, int at, const QString &fault);

} // namespace cnet
