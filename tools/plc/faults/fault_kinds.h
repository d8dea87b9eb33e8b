#pragma once

#include "plc/faults/faults.h"

#include <QString>

#include <array>

namespace plc {

/** How a kind of fault is written on the command line, and which values it takes. */
struct FaultKindText
{
    FaultKind kind;
    const char *name;
    const char *value; ///< what follows "="; empty: the kind takes no value
    int lowest;
    int highest;
    bool range; ///< whether "LOW..HIGH" is allowed
    const char *meaning;
    const char *usual; ///< the default of the value, for --help
};

constexpr int kFaultKinds = 12;

/** All kinds, in the order of FaultKind. */
const std::array<FaultKindText, kFaultKinds> &faultKindTexts();

/** The name of the fault kind on the command line. */
QString faultName(FaultKind kind);

} // namespace plc
