#pragma once

#include <QtCore/QList>

#include "ls_master_k_cnet/records.h"

/// Cap on the length of a job list: one job in flight and 512 behind it.
enum { kMaxWaitingJobs = 513 };

/// Adds a request to a job list. It replaces the newest request for the same range behind the head,
/// if there is one; the head may be in flight and is never replaced. If the list is full, it
/// replaces the last entry. Panel thread, with the driver's lock held.
void insertJob(QList<VARIABLE> &jobs, const VARIABLE &job);
