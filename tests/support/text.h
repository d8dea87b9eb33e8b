#pragma once

#include <QtCore/QString>

/// Tables and calls hold texts as plain characters.
inline QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

/// The size as an int, whatever type the Qt version counts in.
template <typename Container>
int sizeOf(const Container &container)
{
    return static_cast<int>(container.size());
}
