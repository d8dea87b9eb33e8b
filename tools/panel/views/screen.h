#pragma once

#include "panel/output/monitor_output.h"
#include "panel/views/screen_lines.h"

#include <QSize>
#include <QStringList>

#include <array>
#include <functional>

namespace cnet::panel {

/** What a terminal can show besides letters. */
struct ScreenLook
{
    Glyphs glyphs = Glyphs::Ascii;
    Colours colours = Colours::None;
};

/** As the environment has it: the locale's characters, and no colours where NO_COLOR is set. */
ScreenLook screenLook();

/** Which end of a line is shown where it is too long for the terminal. */
enum class Cut { Front, Back };

/**
 * A monitor's views on a terminal, updated in place: only what has changed on the screen is sent.
 * What the program says meanwhile scrolls by above, and is kept for the view of the log.
 * The cursor is hidden while the screen lives and comes back with its end, whatever ends it in
 * order.
 */
class Screen : public MonitorOutput
{
public:
    static constexpr int kLogLines = 500;

    /** @param device the terminal; @param size its columns and rows, asked for at every refresh */
    Screen(QIODevice &device, std::function<QSize()> size, const ScreenLook &look = ScreenLook(),
           const QVector<Tag> &tags = {});
    ~Screen() override;

    void showChanges(const Monitor &monitor, const QVector<ValueChange> &changes) override;
    void setTags(const QVector<Tag> &tags, const QVector<int> &before) override;
    void refresh(const Monitor &monitor, const MonitorStatus &status) override;
    void end(const Monitor &monitor, const MonitorStatus &status) override;

    /** A line below the list, from the next refresh on. @param cut what of a long one goes */
    void setBottomLine(const QString &line, Cut cut = Cut::Front);

    /** What is shown from the next refresh on. Each view keeps its place in its list. */
    void setView(const ViewState &state) { m_state = state; }

    /** Moves through the list, from the next refresh on. @param lines down; negative: up */
    void scroll(int lines) { scrolled() += lines; }

    /** Shows a line above the view, and keeps the last kLogLines of them. */
    void say(const QString &line);

private:
    int &scrolled() { return m_scrolled.at(static_cast<size_t>(m_state.view)); }
    QByteArray redrawn() const;
    void draw();

    QIODevice &m_device;
    std::function<QSize()> m_size;
    ScreenLook m_look;
    QSize m_lastSize;
    QVector<StyledLine> m_shown; ///< what the terminal shows
    QVector<StyledLine> m_lines; ///< what it is to show
    QString m_bottomLine;        ///< empty: none
    Cut m_cut = Cut::Front;
    ViewState m_state;
    ValueHistory m_history;
    QStringList m_log;
    std::array<int, kViews> m_scrolled{};
};

} // namespace cnet::panel
