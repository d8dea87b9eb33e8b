#include "panel/views/screen.h"

#include <QTime>

#include <algorithm>
#include <utility>

namespace cnet::panel {

namespace {

const char kHideCursor[] = "\x1b[?25l";
const char kShowCursor[] = "\x1b[?25h";
const char kClearToLineEnd[] = "\x1b[K";
const char kClearBelow[] = "\x1b[J";
const char kClearAll[] = "\x1b[2J\x1b[H";

// Up or down within what the terminal shows already.
QByteArray moved(int lines)
{
    if (lines == 0) {
        return QByteArray();
    }
    return "\x1b[" + QByteArray::number(std::abs(lines)) + (lines < 0 ? 'A' : 'B');
}

QByteArray toColumn(int column)
{
    return column == 0 ? QByteArray("\r") : "\x1b[" + QByteArray::number(column + 1) + 'G';
}

// The end of what has to be written from a column on: what is alike behind it is longer than the
// way to the next difference.
int endOfChange(const StyledLine &from, const StyledLine &to, int first)
{
    const int shortestGap = 8;
    int end = first + 1;
    for (int column = end; column < to.size() && column < end + shortestGap; ++column) {
        end = to.isSameAt(column, from) ? end : column + 1;
    }
    return end;
}

// Makes one line of another one; the cursor is somewhere on it.
QByteArray changed(const StyledLine &from, const StyledLine &to, Colours colours)
{
    QByteArray bytes;
    for (int column = 0; column < to.size(); ++column) {
        if (!to.isSameAt(column, from)) {
            const int end = endOfChange(from, to, column);
            bytes += toColumn(column) + to.bytes(column, end, colours);
            column = end - 1;
        }
    }
    return from.size() > to.size() ? bytes + toColumn(to.size()) + kClearToLineEnd : bytes;
}

} // namespace

ScreenLook screenLook()
{
    ScreenLook look;
    look.glyphs = terminalGlyphs();
    look.colours = qEnvironmentVariableIsEmpty("NO_COLOR") ? Colours::Some : Colours::None;
    return look;
}

Screen::Screen(QIODevice &device, std::function<QSize()> size, const ScreenLook &look,
               const QVector<Tag> &tags)
    : m_device(device)
    , m_size(std::move(size))
    , m_look(look)
    , m_history(tags)
{
    m_device.write(kHideCursor);
}

Screen::~Screen()
{
    m_device.write(kShowCursor);
}

void Screen::showChanges(const Monitor &monitor, const QVector<ValueChange> &changes)
{
    m_history.note(monitor, changes);
}

void Screen::setTags(const QVector<Tag> &tags, const QVector<int> &before)
{
    m_history.setTags(tags, before);
}

// The cursor stands below the last line before and after.
QByteArray Screen::redrawn() const
{
    QByteArray bytes;
    int at = static_cast<int>(m_shown.size());
    const int both = static_cast<int>(std::min(m_shown.size(), m_lines.size()));
    for (int row = 0; row < both; ++row) {
        if (m_lines.at(row) != m_shown.at(row)) {
            bytes += moved(row - at) + changed(m_shown.at(row), m_lines.at(row), m_look.colours);
            at = row;
        }
    }
    if (m_lines.size() > both) {
        // New lines have to be made, which moving does not do.
        bytes += moved(both - at) + '\r';
        for (int row = both; row < m_lines.size(); ++row) {
            const StyledLine &line = m_lines.at(row);
            bytes += line.bytes(0, line.size(), m_look.colours) + "\r\n";
        }
        return bytes;
    }
    if (m_shown.size() > both) {
        return bytes + moved(both - at) + '\r' + kClearBelow;
    }
    return bytes.isEmpty() ? bytes : bytes + moved(both - at) + '\r';
}

void Screen::draw()
{
    const QByteArray bytes = redrawn();
    if (!bytes.isEmpty()) {
        m_device.write(bytes);
    }
    m_shown = m_lines;
}

void Screen::setBottomLine(const QString &line, Cut cut)
{
    m_bottomLine = line;
    m_cut = cut;
}

void Screen::refresh(const Monitor &monitor, const MonitorStatus &status)
{
    const QSize size = m_size();
    // A terminal that was made narrower has wrapped the old lines, so their number is not known.
    if (m_lastSize.isValid() && size != m_lastSize) {
        m_device.write(kClearAll);
        m_shown.clear();
    }
    m_lastSize = size;
    m_history.sample(monitor, status.nowMs);
    // The cursor stands below the last line, which takes a row of its own.
    const int rowsBelow = m_bottomLine.isEmpty() ? 1 : 2;
    const ViewInput input{monitor, status, m_state, m_history, m_log, m_look.glyphs};
    m_lines = screenLines(input, size.width(), std::max(1, size.height() - rowsBelow), scrolled());
    if (!m_bottomLine.isEmpty()) {
        m_lines.append(StyledLine(m_cut == Cut::Front ? m_bottomLine.right(size.width())
                                                      : m_bottomLine.left(size.width())));
    }
    draw();
}

void Screen::end(const Monitor &monitor, const MonitorStatus &status)
{
    refresh(monitor, status);
}

void Screen::say(const QString &line)
{
    m_log.append(QTime::currentTime().toString(QLatin1String("HH:mm:ss")) + QLatin1String("  ") +
                 line);
    if (m_log.size() > kLogLines) {
        m_log.removeFirst();
    }
    m_device.write(moved(-static_cast<int>(m_shown.size())) + '\r' + kClearBelow +
                   line.toLocal8Bit() + "\r\n");
    m_shown.clear();
    draw();
}

} // namespace cnet::panel
