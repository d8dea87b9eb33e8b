#pragma once

namespace cnet {

/**
 * Tags of the jobs that the panel queues (`VARIABLE::opKind`). The driver carries them along into
 * each frame of a job, which is how the panel tells what an exchange was for. They keep clear of
 * the driver's own tag of cyclic reads.
 */
constexpr int kOneOffRead = 100;
constexpr int kFirstWrite = 1000; ///< each write has a number of its own from here on
constexpr int kLastWrite = 1000000;

} // namespace cnet
