#pragma once

#include "panel/output/monitor_output.h"

#include <QSize>
#include <QStringList>

#include <functional>

namespace cnet::panel {

/**
 * A table on a terminal that updates in place. What the program says meanwhile scrolls by above it.
 * The cursor is hidden until this object is destroyed.
 */
class Screen : public MonitorOutput
{
public:
    /** @param device the terminal; @param size its columns and rows, asked for at every refresh */
    Screen(QIODevice &device, std::function<QSize()> size);
    ~Screen() override;

    void refresh(const Monitor &monitor, const MonitorStatus &status) override;
    void end(const Monitor &monitor, const MonitorStatus &status) override;

    /** A line below the table, from the next refresh on; of a long one its end is shown. */
    void setBottomLine(const QString &line) { m_bottomLine = line; }

    /** Moves through the items, from the next refresh on. @param lines down; negative: up */
    void scroll(int lines) { m_scrolled += lines; }

    /** Shows a line above the table. */
    void say(const QString &line);

private:
    QByteArray backToTop() const;
    void draw();

    QIODevice &m_device;
    std::function<QSize()> m_size;
    QSize m_lastSize;
    QStringList m_shown;
    QStringList m_lines;
    QString m_bottomLine; ///< empty: none
    int m_scrolled = 0;
};

/** True when the file descriptor leads to a terminal that understands cursor movement. */
bool isTerminal(int fileDescriptor);

/** Columns and rows of the terminal; 80 x 24 where it does not tell. */
QSize terminalSize(int fileDescriptor);

} // namespace cnet::panel
