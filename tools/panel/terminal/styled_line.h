#pragma once

#include <QByteArray>
#include <QString>

namespace cnet::panel {

/** Why a part of a line stands out. What it says can be read without it, too. */
enum class Emphasis : char {
    None,
    Heading,
    Changed, ///< a value that is another one than a moment ago
    Bad,     ///< not to be relied on
};

/** Whether a terminal is to show colours besides bold and reverse. */
enum class Colours { None, Some };

/** A line of a screen, a column for each character. */
class StyledLine
{
public:
    StyledLine() = default;
    explicit StyledLine(const QString &text, Emphasis emphasis = Emphasis::None)
    {
        append(text, emphasis);
    }

    void append(const QString &text, Emphasis emphasis = Emphasis::None);
    /** Appends text and blanks that fill a column of this width; a longer text is cut. */
    void appendCell(const QString &text, int width, Emphasis emphasis = Emphasis::None);
    /** Cuts what lies beyond this many columns. */
    void truncate(int columns);

    const QString &text() const { return m_text; }
    int size() const { return static_cast<int>(m_text.size()); }
    Emphasis emphasisAt(int column) const { return static_cast<Emphasis>(m_emphasis.at(column)); }

    /** True where both lines show the same in a column that both have. */
    bool isSameAt(int column, const StyledLine &other) const
    {
        return column < size() && column < other.size() &&
               m_text.at(column) == other.m_text.at(column) &&
               m_emphasis.at(column) == other.m_emphasis.at(column);
    }

    /** The columns from `first` to before `end` as a terminal takes them; emphasis ends with it. */
    QByteArray bytes(int first, int end, Colours colours) const;

    bool operator==(const StyledLine &other) const
    {
        return m_text == other.m_text && m_emphasis == other.m_emphasis;
    }
    bool operator!=(const StyledLine &other) const { return !(*this == other); }

private:
    QString m_text;
    QByteArray m_emphasis; ///< an Emphasis for each character
};

} // namespace cnet::panel
