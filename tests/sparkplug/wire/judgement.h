#pragma once

#include "sparkplug/checker/checker.h"

namespace spcheck {

/**
 * All that is wrong with what an edge node said: rules that the checker finds broken, and messages
 * that protoc reads otherwise than the checker. Empty: nothing.
 */
QStringList faultsOf(const Stream &stream, const Subject &subject);

/** Messages of a node that protoc reads otherwise than the checker. */
QStringList otherOpinions(const Stream &stream);

} // namespace spcheck
