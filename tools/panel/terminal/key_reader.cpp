#include "panel/terminal/key_reader.h"

namespace cnet::panel {

namespace {

struct Sequence
{
    const char *bytes;
    MoveKey key;
};

// As xterm, the Linux console and what imitates them send them.
const Sequence kSequences[] = {
    {"\x1b[A", MoveKey::Up},        {"\x1b[B", MoveKey::Down}, {"\x1b[5~", MoveKey::PageUp},
    {"\x1b[6~", MoveKey::PageDown}, {"\x1b[H", MoveKey::Home}, {"\x1b[1~", MoveKey::Home},
    {"\x1b[F", MoveKey::End},       {"\x1b[4~", MoveKey::End}, {"\x1bOA", MoveKey::Up},
    {"\x1bOB", MoveKey::Down},      {"\x1bOH", MoveKey::Home}, {"\x1bOF", MoveKey::End},
};

// Behind "ESC [" or "ESC O" come parameters and one of these; behind ESC alone is a key with Alt.
bool endsSequence(const QByteArray &sequence)
{
    const char byte = sequence.at(sequence.size() - 1);
    return sequence.size() == 2 ? byte != '[' && byte != 'O' : byte >= '@' && byte <= '~';
}

} // namespace

MoveKey KeyReader::feed(char byte)
{
    if (byte == '\x1b') {
        m_sequence = QByteArray(1, byte);
        return MoveKey::None;
    }
    if (m_sequence.isEmpty()) {
        return MoveKey::None;
    }
    m_sequence.append(byte);
    for (const Sequence &sequence : kSequences) {
        if (m_sequence == sequence.bytes) {
            m_sequence.clear();
            return sequence.key;
        }
    }
    if (endsSequence(m_sequence)) {
        m_sequence.clear();
    }
    return MoveKey::None;
}

KeyReader::Rest KeyReader::endOfInput()
{
    if (m_sequence != "\x1b") {
        return Rest::Nothing;
    }
    m_sequence.clear();
    return Rest::Escape;
}

} // namespace cnet::panel
