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
        Changed,   ///< the text is another one
        Entered,   ///< the line is complete
        Cancelled, ///< the user wants nothing of it
    };

    static constexpr int kLongestLine = 200;

    /** Takes one byte from the terminal. */
    Event feed(char byte);

    /**
     * What was read at once is through. Esc by itself is told from the keys that send more behind
     * it only by that.
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
