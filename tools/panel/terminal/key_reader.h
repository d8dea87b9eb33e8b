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

private:
    QByteArray m_sequence; ///< from ESC on
};

} // namespace cnet::panel
