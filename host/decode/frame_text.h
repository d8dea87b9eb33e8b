#pragma once

#include "host/decode/decoded_frame.h"

namespace cnet {

/** Bytes as text: printable ones as they are, "<ENQ>" and the like, others as "\x1B". */
QString visibleText(const QByteArray &bytes);

/** A range as the user may write it, with its values: "1/D_W:100*2 = 1 0x0001, 2 0x0002". */
QString rangeText(const FrameRange &range);

/** "request", "answer", "refusal", "no frame". */
QString directionText(FrameDirection direction);

/** "good", "no frame", "malformed", "cut", "wrong check", "mismatch". */
QString verdictText(FrameVerdict verdict);

/**
 * What a frame says, in one line, and what is wrong with it: "station 1, read 1/D_W:100*5". Never
 * empty. Of a long row of values only the first ones.
 */
QString frameSummary(const DecodedFrame &frame);

/** A caret below the byte where the frame goes wrong, and why; fits below visibleText(). */
QString faultLine(const DecodedFrame &frame);

} // namespace cnet
