#pragma once

#include "faults.h"

#include <array>

namespace plc {

/** How a kind of fault is written and what values it takes. */
struct FaultKindText
{
    FaultKind kind;
    const char *name;
    const char *value; ///< what stands behind "="; empty: nothing does
    int lowest;
    int highest;
    bool range; ///< whether "LOW..HIGH" is possible
    const char *meaning;
};

constexpr int kFaultKinds = 11;

/** All kinds, in the order of FaultKind. */
const std::array<FaultKindText, kFaultKinds> &faultKindTexts();

} // namespace plc
