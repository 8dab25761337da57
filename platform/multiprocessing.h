// Concurrent tasks, and queues of the messages that they end with. macOS has them; elsewhere libombrix_platform defines
// these functions.
#pragma once

#ifdef __APPLE__
#include <CoreServices/CoreServices.h>

#include <cstdint>
#else

#include <cstdint>

// Exported from libombrix_platform; the build hides all else.
#pragma GCC visibility push(default)
extern "C" {

using MPQueueID = struct OpaqueMPQueueID*;
using MPTaskID = struct OpaqueMPTaskID*;

/// The number of processors that can run tasks.
unsigned long MPProcessorsScheduled(void);

/// Makes a queue. 0, or an error status: `queue` is then unchanged.
std::int32_t MPCreateQueue(MPQueueID* queue);

/// Starts a task that calls `entry(parameter)`, then posts the message (`termination1`, `termination2`, the result) on
/// `notifyQueue`. `stackSize` is in bytes, 0 for the default; `options` is 0; `notifyQueue` and `task` may be null. 0,
/// or an error status: no task was started.
std::int32_t MPCreateTask(std::int32_t (*entry)(void*), void* parameter, unsigned long stackSize, MPQueueID notifyQueue,
                          void* termination1, void* termination2, std::uint32_t options, MPTaskID* task);

/// Takes the oldest message from a queue, or waits for one. The three addresses may be null. `duration` is in
/// milliseconds when positive, in microseconds when negative; kWaitForever has no limit. 0 with a message, else
/// kWaitTimedOut or an error status.
std::int32_t MPWaitOnQueue(MPQueueID queue, void** parameter1, void** parameter2, void** parameter3,
                           std::int32_t duration);

/// Deletes a queue. Messages of tasks that still run are dropped.
std::int32_t MPDeleteQueue(MPQueueID queue);

}  // extern "C"
#pragma GCC visibility pop

#endif

// The system's own names for these are enumerators, so they differ.
inline constexpr std::int32_t kWaitForever = 0x7fffffff;  // a duration
inline constexpr std::int32_t kWaitTimedOut = -29296;     // a status
