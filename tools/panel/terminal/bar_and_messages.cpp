#include "panel/terminal/bar_and_messages.h"

#include "panel/terminal/terminal.h"

#include <unistd.h>

namespace cnet::panel {

BarAndMessages::BarAndMessages(Messages &messages, const char *noun)
    : m_messages(messages)
    , m_sink(messages.sink())
    , m_bar(standardErrorTerminal(), terminalSize(STDERR_FILENO).width(), noun)
{
    m_messages.setSink([this](const QString &line) {
        m_bar.clear();
        m_sink(line);
    });
}

} // namespace cnet::panel
