#pragma once

#include <termios.h>

namespace cnet::panel {

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
