#pragma once

#include "ls_master_k_cnet/records.h"

/// `dataPos` of a write frame that still waits for the words which its read half fetches.
enum { kWaitsForWords = 18 };

/// Builds the requests that write `item` and appends them to `driver.frames`: one block write of
/// words; one bit write for a single bit or a contact; or, for several bits and for any bit of a
/// data register, a pair: the read of the words that hold them and the write of those words, whose
/// data stay "0" until the read is answered. Exchange thread, with `driver.frames` empty.
///
/// @param item  words low byte first; bits and contacts one byte each. A block of more than 250
///              words is cut at the end of the frame, and the PLC refuses it. A register that is
///              not listed appends nothing.
void getWriteFrame(const VARIABLE &item);
