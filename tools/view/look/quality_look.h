#pragma once

#include "view/look/colours.h"

#include "host/monitor/quality.h"

#include <QIcon>

namespace cnet::view {

Tone toneOf(Quality quality);

/**
 * A sign that is known by its shape alone: a tick, a clock, a triangle, a cross. Never colour
 * alone.
 */
QIcon qualityIcon(Quality quality, const QPalette &palette);

/** qualityText() in the language of the window. */
QString qualityWords(Quality quality);

} // namespace cnet::view
