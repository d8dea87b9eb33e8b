#include "panel/terminal/styled_line.h"

namespace cnet::panel {

namespace {

const char kPlain[] = "\x1b[m";

const char *sequence(Emphasis emphasis, Colours colours)
{
    switch (emphasis) {
    case Emphasis::Heading:
        return "\x1b[1m";
    case Emphasis::Changed:
        return "\x1b[7m";
    case Emphasis::Bad:
        return colours == Colours::Some ? "\x1b[1;31m" : "\x1b[1m";
    case Emphasis::None:
        break;
    }
    return kPlain;
}

} // namespace

void StyledLine::append(const QString &text, Emphasis emphasis)
{
    m_text += text;
    m_emphasis += QByteArray(static_cast<int>(text.size()), static_cast<char>(emphasis));
}

void StyledLine::appendCell(const QString &text, int width, Emphasis emphasis)
{
    const QString cut = text.left(width);
    append(cut, emphasis);
    append(QString(width - cut.size(), QLatin1Char(' ')));
}

void StyledLine::truncate(int columns)
{
    m_text.truncate(columns);
    m_emphasis.truncate(columns);
}

QByteArray StyledLine::bytes(int first, int end, Colours colours) const
{
    QByteArray bytes;
    Emphasis last = Emphasis::None;
    int begin = first;
    for (int column = first; column <= end; ++column) {
        const Emphasis now = column < end ? emphasisAt(column) : Emphasis::None;
        if (now == last && column < end) {
            continue;
        }
        bytes += m_text.mid(begin, column - begin).toLocal8Bit();
        begin = column;
        if (now != last) {
            // One emphasis does not add to the other.
            bytes += last == Emphasis::None ? QByteArray() : QByteArray(kPlain);
            bytes += now == Emphasis::None ? QByteArray() : QByteArray(sequence(now, colours));
            last = now;
        }
    }
    return bytes;
}

} // namespace cnet::panel
