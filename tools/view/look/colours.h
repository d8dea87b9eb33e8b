#pragma once

#include <QColor>
#include <QPalette>

namespace cnet::view {

/** What a colour says. */
enum class Tone { Good, Waiting, Doubtful, Bad, Idle };

/** True where text is lighter than what it stands on. */
bool isDark(const QPalette &palette);

/** A colour for text or lines of a tone, readable on the palette's base. */
QColor toneColour(Tone tone, const QPalette &palette);

/** A colour behind text of the palette: a cell that has just changed, or an error's field. */
QColor washColour(Tone tone, const QPalette &palette);

/** The colour of a trace, different from its neighbours' on light and dark grounds. @param index 0
 * or more */
QColor traceColour(int index, const QPalette &palette);

} // namespace cnet::view
