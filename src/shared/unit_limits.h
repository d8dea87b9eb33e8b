#pragma once

/// A request names a word with five decimal digits: no device has more words or contacts than this,
/// and no register more bits. Whatever a host asks for, no key or answer covers more units.
enum { kMaxUnits = 100000, kMaxBits = 16 * kMaxUnits };
