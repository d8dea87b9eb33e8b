#pragma once

#include <string>

#include "model/frame_text.h"
#include "model/operation.h"

namespace model {

/**
 * What comes in for the frame: its right answer with the operation's values, spoilt by its fault.
 *
 * @param frame  the frame in flight; null: an answer that nobody waits for
 */
std::string answerTo(const Frame *frame, const Operation &operation);

} // namespace model
