#pragma once

#include "panel/driver_library.h"
#include "panel/register_catalog.h"

#include <QString>

namespace panel {

/** What the driver says of itself and its registers, as a page of text. */
QString describeText(const DriverFunctions &driver, const RegisterCatalog &registers);

} // namespace panel
