#include "view/look/readable_palette.h"

#include "view/look/colours.h"

#include <cstdlib>

namespace cnet::view {

namespace {

constexpr int kLeastDifference = 60; ///< of the lightness, 0 to 255

QColor between(const QColor &left, const QColor &right)
{
    return {(left.red() + right.red()) / 2, (left.green() + right.green()) / 2,
            (left.blue() + right.blue()) / 2};
}

} // namespace

QPalette withReadableDisabled(const QPalette &palette)
{
    struct Pair
    {
        QPalette::ColorRole text;
        QPalette::ColorRole ground;
    };
    QPalette result = palette;
    for (const Pair pair :
         {Pair{QPalette::WindowText, QPalette::Window},
          Pair{QPalette::ButtonText, QPalette::Button}, Pair{QPalette::Text, QPalette::Base}}) {
        const QColor &text = palette.color(QPalette::Disabled, pair.text);
        const QColor &ground = palette.color(QPalette::Disabled, pair.ground);
        if (std::abs(text.lightness() - ground.lightness()) < kLeastDifference) {
            result.setColor(QPalette::Disabled, pair.text,
                            between(palette.color(QPalette::Active, pair.text), ground));
        }
    }
    return result;
}

QPalette withVisibleBoxes(const QPalette &palette)
{
    QPalette result = palette;
    if (isDark(palette)) {
        // Styles draw the frames in a darker shade of this one.
        result.setColor(QPalette::Window, toneColour(Tone::Idle, palette));
    }
    return result;
}

} // namespace cnet::view
