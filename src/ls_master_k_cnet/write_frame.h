#pragma once

#include "ls_master_k_cnet/records.h"

/// `dataPos` of a write frame that still waits for the words that its read half fetches.
enum { kWaitsForWords = 18 };

/// Builds the requests that write `item` and appends them to `driver.frames`. Words need one block
/// write, a single bit or a contact needs one bit write. Several bits, and any bit of a data
/// register, need a pair: a read of their words and a write of the same words, whose data are "0"
/// until the read is answered. Exchange thread, with `driver.frames` empty.
///
/// @param item  words low byte first; bits and contacts one byte each. A block of more than 250
///              words is truncated at the end of the frame, and the PLC refuses it. Nothing is
///              appended for an unknown register.
void getWriteFrame(const VARIABLE &item);
