#pragma once

#include "panel/views/screen_lines.h"

namespace cnet::panel {

/** The screen's lines without what makes parts of them stand out. */
inline QStringList screenTexts(const ViewInput &input, int columns, int rows, int &scrolled)
{
    QStringList lines;
    for (const StyledLine &line : screenLines(input, columns, rows, scrolled)) {
        lines.append(line.text());
    }
    return lines;
}

} // namespace cnet::panel
