#pragma once

#include <QString>

namespace cnet::panel {

/**
 * A line that the user types into, character by character: printable ASCII, backspace, Ctrl-U,
 * Enter and Esc. Cursor keys are left alone.
 */
class LineEditor
{
public:
    enum class Event {
        None,
        Changed,   ///< the text has changed
        Entered,   ///< the line is complete
        Cancelled, ///< the user pressed Esc
    };

    static constexpr int kLongestLine = 200;

    /** Takes one byte from the terminal. */
    Event feed(char byte);

    /**
     * Call it after each chunk of input: an Esc at the end of one is the key, any other begins the
     * sequence of a cursor key.
     */
    Event endOfInput();

    void clear();
    const QString &text() const { return m_text; }

private:
    enum class State { Plain, Escape, Sequence };

    Event feedPlain(char byte);

    QString m_text;
    State m_state = State::Plain;
};

} // namespace cnet::panel
