#pragma once

/// Ends the job that `driver.sendState` names, whatever ended it: its last answer, or too many bad
/// ones (`driver.lastFailed`). A write leaves its list; a condition read leaves its list, all of
/// them when it failed, and the host is told when it waited for this one; the cyclic reads rotate;
/// a recipe goes on with its next block or gives its request back. Exchange thread.
void dealListWhenFinish();
