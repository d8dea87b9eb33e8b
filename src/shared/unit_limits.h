#pragma once

/// Cap on the units of a key or an answer, whatever a host asks for. A request addresses a word
/// with five decimal digits, so no device has more words or contacts, and no register more bits.
enum { kMaxUnits = 100000, kMaxBits = 16 * kMaxUnits };
