#pragma once

#include "host/driver/driver_library.h"
#include "host/address/item.h"
#include "panel/system/messages.h"
#include "panel/output/monitor_output.h"
#include "panel/commands/link_settings.h"

namespace cnet::panel {

/** What a monitor shows and for how long. */
struct MonitorRun
{
    QVector<Item> items;
    OutputFormat format = OutputFormat::Text;
    qint64 durationMs = 0;                      ///< 0: no limit
    int rounds = 0;                             ///< 0: no limit
    const RegisterCatalog *registers = nullptr; ///< for writes that the user types; null: none
};

/**
 * Reads and shows the items until a limit is reached or a signal asks for the end.
 *
 * @return exit code: kDeviceFailed when at the end any item was not read, or failed the last time
 */
int runMonitor(const DriverFunctions &driver, const LinkSettings &link, const MonitorRun &run,
               Messages &messages);

} // namespace cnet::panel
