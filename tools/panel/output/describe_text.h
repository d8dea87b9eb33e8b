#pragma once

#include "host/driver/driver_library.h"
#include "host/address/register_catalog.h"

#include <QString>

namespace cnet::panel {

/** What the driver says of itself and its registers, as a page of text. */
QString describeText(const DriverFunctions &driver, const RegisterCatalog &registers);

} // namespace cnet::panel
