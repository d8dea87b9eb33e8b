#pragma once

#include "view/look/colours.h"

#include <QLabel>

namespace cnet::view {

/** Writes text of a tone into a label. */
inline void say(QLabel *label, const QString &text, Tone tone)
{
    QPalette own =
        label->parentWidget() != nullptr ? label->parentWidget()->palette() : label->palette();
    own.setColor(QPalette::WindowText, toneColour(tone, own));
    label->setPalette(own);
    label->setText(text);
}

} // namespace cnet::view
