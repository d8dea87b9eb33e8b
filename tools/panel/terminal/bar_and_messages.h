#pragma once

#include "panel/system/messages.h"
#include "panel/terminal/progress_bar.h"

namespace cnet::panel {

/** A progress bar that shares its line with the messages. */
class BarAndMessages
{
public:
    /** @param noun what the bar counts, see progressText() */
    explicit BarAndMessages(Messages &messages, const char *noun);
    ~BarAndMessages() { m_messages.setSink(m_sink); }
    BarAndMessages(const BarAndMessages &) = delete;
    BarAndMessages &operator=(const BarAndMessages &) = delete;

    ProgressBar &bar() { return m_bar; }

private:
    Messages &m_messages;
    Messages::Sink m_sink; ///< as it was before
    ProgressBar m_bar;
};

} // namespace cnet::panel
