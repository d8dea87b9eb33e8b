#pragma once

/// Finishes the current job (`driver.sendState`) after its last answer, or after too many bad ones
/// (`driver.lastFailed`). A write is removed from its list. So is a condition read, or all of them
/// if it failed, and the host is notified if it waits for this one. The cyclic reads advance to the
/// next block. A recipe transfer continues with its next block, or its request is cleared. Exchange
/// thread.
void dealListWhenFinish();
