#pragma once

#include <QString>

#include <functional>

namespace cnet::panel {

/**
 * Prints messages, which are not data: on standard error, or wherever a screen that occupies the
 * terminal puts it.
 */
class Messages
{
public:
    using Sink = std::function<void(const QString &line)>;

    Messages();

    /** An empty sink stands for standard error. */
    void setSink(Sink sink);
    const Sink &sink() const { return m_sink; }

    /** One message to the user, on one line of bounded length; the program's name goes before it.
     */
    void say(const QString &text);

    /** The same of output that the user asked for and does not get; see isOutputLost(). */
    void sayLost(const QString &text);

    /** Whether any was lost, whatever else went well. */
    bool isOutputLost() const { return m_outputLost; }

    /** For a program that runs more than one command. */
    void forgetLost() { m_outputLost = false; }

    /** One line as it is. */
    void line(const QString &text);

private:
    Sink m_sink;
    bool m_outputLost = false;
};

/** One line to standard error, at once. */
void writeToStandardError(const QString &line);

} // namespace cnet::panel
