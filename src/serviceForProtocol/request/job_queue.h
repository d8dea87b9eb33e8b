#pragma once

#include <QtCore/QList>

#include "ls_master_k_cnet/records.h"

/// Length beyond which a list of waiting jobs does not grow: one in flight and 512 behind it.
enum { kMaxWaitingJobs = 513 };

/// Puts a request on a list of waiting jobs. A request for the same range that waits behind the
/// head is replaced in its place, the newest one first; the head may be in flight and is never
/// touched. A full list has its last entry replaced. Panel thread, with the driver's lock held.
void insertJob(QList<VARIABLE> &jobs, const VARIABLE &job);
