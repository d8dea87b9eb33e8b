#pragma once

#include <QSize>

#include <termios.h>

namespace cnet::panel {

/** True when the file descriptor leads to a terminal that understands cursor movement. */
bool isTerminal(int fileDescriptor);

/** Columns and rows of the terminal; 80 x 24 where it does not tell. */
QSize terminalSize(int fileDescriptor);

/**
 * Makes a terminal hand over each key at once and without echo, for as long as the object lives.
 * Ctrl-C still is SIGINT. Where the program does not own the terminal nothing happens.
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

} // namespace cnet::panel
