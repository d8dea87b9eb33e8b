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

} // namespace cnet
