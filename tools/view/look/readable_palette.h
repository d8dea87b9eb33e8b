#pragma once

#include <QPalette>

namespace cnet::view {

/**
 * The palette with texts of disabled buttons, fields and labels that can be read: on dark desktops
 * they are all but black now and then. What can be read stays as it is.
 */
QPalette withReadableDisabled(const QPalette &palette);

/** The palette for a widget with boxes to tick, whose frames are seen on dark grounds, too. */
QPalette withVisibleBoxes(const QPalette &palette);

} // namespace cnet::view
