#pragma once

#include <QLocale>
#include <QString>

namespace cnet {

/** @return the shortest text that gives the same number again */
inline QString numberText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

} // namespace cnet
