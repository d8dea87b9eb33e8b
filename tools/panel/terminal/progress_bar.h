#pragma once

#include <QString>

#include <functional>

namespace cnet::panel {

/** "[#####.....]  60 of 120 words", no longer than `columns`. @param noun what is counted */
QString progressText(int done, int total, int columns, const char *noun = "words");

/** A line that grows in place on a terminal. */
class ProgressBar
{
public:
    using Sink = std::function<void(const QByteArray &bytes)>;

    /**
     * @param sink the terminal; empty: the bar does not show
     * @param columns of the terminal
     * @param noun what is counted
     */
    explicit ProgressBar(Sink sink, int columns, const char *noun = "words");
    ~ProgressBar() { clear(); }
    ProgressBar(const ProgressBar &) = delete;
    ProgressBar &operator=(const ProgressBar &) = delete;

    void show(int done, int total);

    /** Takes the bar away, for a message in its place or for good. */
    void clear();

private:
    Sink m_sink;
    int m_columns;
    const char *m_noun;
    bool m_shown = false;
};

/** A bar on standard error where that is a terminal, else one that does not show. */
ProgressBar::Sink standardErrorTerminal();

} // namespace cnet::panel
