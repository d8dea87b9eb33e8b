#pragma once

#include <QString>
#include <QVector>

namespace cnet::panel {

/** What a small curve is drawn with. */
enum class Glyphs {
    Ascii,
    Blocks, ///< eighths of a block, where the terminal has them
};

/** Blocks where the locale's characters have them. To be asked after the locale was set. */
Glyphs terminalGlyphs();

/**
 * A curve of one line, a character for each sample, from the least to the greatest of them.
 * Where there is no sample, which NaN stands for, there is a blank: a gap stays a gap.
 */
QString sparkline(const QVector<double> &samples, Glyphs glyphs);

} // namespace cnet::panel
