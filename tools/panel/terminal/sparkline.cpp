#include "panel/terminal/sparkline.h"

#include <langinfo.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace cnet::panel {

namespace {

const int kLevels = 8;
const char kAscii[] = "_.,-=+*#";
const ushort kLowestBlock = 0x2581;

QChar glyph(int level, Glyphs glyphs)
{
    return glyphs == Glyphs::Blocks ? QChar(static_cast<ushort>(kLowestBlock + level))
                                    : QChar(QLatin1Char(kAscii[level]));
}

} // namespace

Glyphs terminalGlyphs()
{
    return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0 ? Glyphs::Blocks : Glyphs::Ascii;
}

QString sparkline(const QVector<double> &samples, Glyphs glyphs)
{
    double low = std::nan("");
    double high = low;
    for (const double sample : samples) {
        // Of a number and NaN these take the number.
        low = std::fmin(low, sample);
        high = std::fmax(high, sample);
    }
    QString text;
    for (const double sample : samples) {
        if (std::isnan(sample)) {
            text += QLatin1Char(' ');
            continue;
        }
        const double share = high > low ? (sample - low) / (high - low) : 0;
        text += glyph(std::min(kLevels - 1, static_cast<int>(share * kLevels)), glyphs);
    }
    return text;
}

} // namespace cnet::panel
