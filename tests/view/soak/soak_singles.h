#pragma once

#include "view/soak/soak_load.h"

namespace cnet::view {

/**
 * What people do now and then with much of everything, once each: 10 000 rows opened and read, a
 * full table of frames filtered, saved and opened again. Prints for how long each of them kept the
 * event loop.
 * @param folder for files
 */
void runSingles(MainWindow &window, SoakLoad &load, LoopMeter &meter, const QString &folder);

} // namespace cnet::view
