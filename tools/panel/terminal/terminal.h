#pragma once

#include <QByteArray>
#include <QSize>

#include <termios.h>

#include <optional>

namespace cnet::panel {

/** True when the file descriptor leads to a terminal that understands cursor movement. */
bool isTerminal(int fileDescriptor);

/** Columns and rows of the terminal; 80 x 24 where it does not tell. */
QSize terminalSize(int fileDescriptor);

/**
 * Makes a terminal hand over each key at once and without echo, for as long as the object lives.
 * Ctrl-C still is SIGINT. Where the program does not own the terminal nothing happens.
 *
 * Reading does not wait meanwhile: Ctrl-C throws away what was typed before it, also a key that the
 * program has heard of and is about to read.
 */
class RawTerminal
{
public:
    explicit RawTerminal(int fileDescriptor);
    ~RawTerminal();
    RawTerminal(const RawTerminal &) = delete;
    RawTerminal &operator=(const RawTerminal &) = delete;

    bool isActive() const { return m_active; }

private:
    int m_fileDescriptor;
    termios m_before{};
    bool m_active = false;
};

/**
 * What was typed and not read yet, of a terminal that a RawTerminal has; empty: it was thrown away.
 * @return nothing: the terminal is gone
 */
std::optional<QByteArray> typedKeys(int fileDescriptor);

} // namespace cnet::panel
