#pragma once

#include <QByteArray>

namespace cnet::panel {

/** Keys by which one moves through a list. */
enum class MoveKey { None, Up, Down, PageUp, PageDown, Home, End };

/** Tells the keys for moving from the bytes that a terminal sends for them. */
class KeyReader
{
public:
    /** Takes one byte. @return the key that it completes */
    MoveKey feed(char byte);

private:
    QByteArray m_sequence; ///< from ESC on
};

} // namespace cnet::panel
