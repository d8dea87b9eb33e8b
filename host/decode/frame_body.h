#pragma once

#include "host/decode/field_cursor.h"

namespace cnet {

/** Takes apart what a request has between its command and EOT. */
void decodeRequestBody(DecodedFrame &frame, FieldCursor &cursor);

/**
 * The same of an answer or a refusal, up to ETX.
 *
 * @param request that it answers, which says what its values are; nullptr: not known
 */
void decodeAnswerBody(DecodedFrame &frame, FieldCursor &cursor, const DecodedFrame *request);

/**
 * Takes one value of a range, of a write request or of an answer to a read.
 *
 * @return false where it is none; the cursor has the fault then
 */
bool takeValue(FieldCursor &cursor, FrameRange &range);

} // namespace cnet
