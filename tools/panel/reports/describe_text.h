#pragma once

#include "host/driver/driver.h"

#include <QString>

namespace cnet::panel {

/** What the driver says of itself and its registers, as a page of text. */
QString describeText(const Driver &driver);

} // namespace cnet::panel
