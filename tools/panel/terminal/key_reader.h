#pragma once

#include <QByteArray>

namespace cnet::panel {

/** Keys that move through a list. */
enum class MoveKey { None, Up, Down, PageUp, PageDown, Home, End };

/** Recognizes these keys in the bytes that a terminal sends. */
class KeyReader
{
public:
    /** Takes one byte. @return the key that it completes */
    MoveKey feed(char byte);

    /** The bytes so far begin a key that sends several: the next one is no key by itself. */
    bool isWithinSequence() const { return !m_sequence.isEmpty(); }

    /** What is left of what was read at once. */
    enum class Rest { Nothing, Escape };

    /** What was read at once is through, so an ESC at its end was that key. */
    Rest endOfInput();

private:
    QByteArray m_sequence; ///< from ESC on
};

} // namespace cnet::panel
