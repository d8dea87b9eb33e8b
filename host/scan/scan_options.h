#pragma once

#include "host/address/register_info.h"
#include "host/link/link_address.h"

#include <QVector>

namespace cnet {

/** What a Scan looks for. */
struct ScanOptions
{
    /** Settings of the line, to be tried in this order until something answers; one at least. */
    QVector<LineSettings> settings = QVector<LineSettings>(1);
    /** Stations to be asked, 0 to 31, each once. */
    QVector<int> stations;
    /** Word registers whose reach is found out, within the limits that they have; may be empty. */
    QVector<RegisterInfo> registers;
    /**
     * How long an answer may take in milliseconds, 1 or more; 0: half a second and what the line
     * needs, and much less while settings are searched for.
     */
    int timeoutMs = 0;
};

} // namespace cnet
