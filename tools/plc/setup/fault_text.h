#pragma once

#include "plc/faults/faults.h"
#include "plc/setup/text_error.h"

namespace plc {

/** A fault and its station; negative: all stations. */
struct FaultSetting
{
    int station = -1;
    Fault fault;
};

/** "[STATION:]KIND[=VALUE[..VALUE]][*TIMES][@PERCENT%]". */
Parsed<FaultSetting> parseFault(const QString &text);

/** As parseFault() takes it, with the times that are left. */
QString faultText(const FaultSetting &setting);

/** The table of fault kinds with their values and limits, for --help. */
QString faultHelp();

} // namespace plc
