#include "view/look/colours.h"

#include <array>

namespace cnet::view {

namespace {

// Told apart by people who do not see red and green, too: blue, orange and their like come first.
constexpr std::array<QRgb, 10> kOnLight = {0x0060a8, 0xc05000, 0x007a5a, 0xa0307a, 0x6a5acd,
                                           0x8a6d00, 0x007f9f, 0xb02a30, 0x4a7a10, 0x5a5a5a};
constexpr std::array<QRgb, 10> kOnDark = {0x5ab4f0, 0xffa050, 0x40d0a0, 0xf080c8, 0xb0a0ff,
                                          0xe8c840, 0x50d8f0, 0xff8080, 0xa8d860, 0xc0c0c0};

struct ToneColours
{
    QRgb onLight;
    QRgb onDark;
    QRgb washLight;
    QRgb washDark;
};

ToneColours coloursOf(Tone tone)
{
    switch (tone) {
    case Tone::Good:
        return {0x00704a, 0x50d8a0, 0xd4f0e2, 0x14503a};
    case Tone::Waiting:
        return {0x0060a8, 0x70bcff, 0xd6e8fa, 0x17406a};
    case Tone::Doubtful:
        return {0x8a5a00, 0xf0c050, 0xfdf0cc, 0x594510};
    case Tone::Bad:
        return {0xb02020, 0xff8080, 0xfbdcdc, 0x6a2428};
    case Tone::Idle:
        break;
    }
    return {0x5f6368, 0xb0b4b8, 0xeceef0, 0x3a3d40};
}

} // namespace

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Text).lightness() > palette.color(QPalette::Base).lightness();
}

QColor toneColour(Tone tone, const QPalette &palette)
{
    const ToneColours colours = coloursOf(tone);
    return {isDark(palette) ? colours.onDark : colours.onLight};
}

QColor washColour(Tone tone, const QPalette &palette)
{
    const ToneColours colours = coloursOf(tone);
    return {isDark(palette) ? colours.washDark : colours.washLight};
}

QColor traceColour(int index, const QPalette &palette)
{
    const auto &colours = isDark(palette) ? kOnDark : kOnLight;
    return {colours[static_cast<size_t>(index) % colours.size()]};
}

} // namespace cnet::view
