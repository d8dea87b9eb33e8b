#pragma once

#include "plc/faults/fault_kinds.h"

#include <QString>

namespace cnet::view {

/** A kind of fault for people who want to learn what trouble looks like. */
struct FaultWords
{
    QString name;      ///< "No answer"
    QString lesson;    ///< what happens then, and what this window shows of it
    QString valueName; ///< what its value is, with the unit; empty: it takes none
};

FaultWords faultWords(plc::FaultKind kind);

/** Which values a kind takes: "0 to 600000, or a range such as 50..200". */
QString faultLimits(plc::FaultKind kind);

/** A fault that is on: "Late answer, 500 ms: in 10 % of the requests, 3 more times". */
QString faultInWords(const plc::Fault &fault);

} // namespace cnet::view
