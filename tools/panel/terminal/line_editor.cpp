#include "panel/terminal/line_editor.h"

namespace cnet::panel {

namespace {

const char kBackspace = '\x08';
const char kControlU = '\x15';
const char kEscape = '\x1b';
const char kDelete = '\x7f';

bool isPrintable(char byte)
{
    return byte >= ' ' && byte < kDelete;
}

// Behind "ESC [" or "ESC O" come parameters and one of these.
bool endsSequence(char byte)
{
    return byte >= '@' && byte <= '~';
}

} // namespace

LineEditor::Event LineEditor::feed(char byte)
{
    switch (m_state) {
    case State::Escape:
        m_state = byte == '[' || byte == 'O' ? State::Sequence : State::Plain;
        return m_state == State::Plain ? Event::Cancelled : Event::None;
    case State::Sequence:
        if (endsSequence(byte)) {
            m_state = State::Plain;
        }
        return Event::None;
    case State::Plain:
        break;
    }
    return feedPlain(byte);
}

LineEditor::Event LineEditor::feedPlain(char byte)
{
    switch (byte) {
    case '\r':
    case '\n':
        return Event::Entered;
    case kEscape:
        m_state = State::Escape;
        return Event::None;
    case kBackspace:
    case kDelete:
        m_text.chop(1);
        return Event::Changed;
    case kControlU:
        m_text.clear();
        return Event::Changed;
    default:
        break;
    }
    if (!isPrintable(byte) || m_text.size() >= kLongestLine) {
        return Event::None;
    }
    m_text.append(QLatin1Char(byte));
    return Event::Changed;
}

LineEditor::Event LineEditor::endOfInput()
{
    if (m_state != State::Escape) {
        return Event::None;
    }
    m_state = State::Plain;
    return Event::Cancelled;
}

void LineEditor::clear()
{
    m_text.clear();
    m_state = State::Plain;
}

} // namespace cnet::panel
