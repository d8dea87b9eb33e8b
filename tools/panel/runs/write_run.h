#pragma once

#include "host/address/assignment.h"
#include "host/driver/driver_library.h"
#include "panel/system/messages.h"
#include "host/jobs/reader.h"
#include "panel/commands/link_settings.h"

#include <optional>

namespace cnet::panel {

/** How the write of one assignment ended. */
struct WriteResult
{
    Assignment assignment;
    bool settled = false;
    QString failure;               ///< why the PLC did not take it; empty when it did
    std::optional<ReadResult> now; ///< of a failed one, what the PLC was found to hold

    bool isGood() const { return settled && failure.isEmpty(); }
    /** "1/D_W:5=7: written", or why not and what it holds. */
    QString text() const;
};

/**
 * Writes, waits until all is settled, and reads again what failed: a station may have taken a write
 * whose answer was lost, and of a row that was written in parts some may be new and some old.
 *
 * @param assignments whose addresses were checked
 * @param results receives one for each
 * @return exit code
 */
int runWrites(const DriverFunctions &driver, const LinkSettings &link,
              const QVector<Assignment> &assignments, Messages &messages,
              QVector<WriteResult> &results);

} // namespace cnet::panel
