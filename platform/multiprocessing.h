// Tasks that run at once and queues that tell when they have ended. macOS brings them; elsewhere
// `libombrix_platform` defines the same five functions, with the same names, arguments and statuses.
#pragma once

#ifdef __APPLE__
#include <CoreServices/CoreServices.h>

#include <cstdint>
#else

#include <cstdint>

// Exported from libombrix_platform, though all else here is compiled to stay hidden.
#pragma GCC visibility push(default)
extern "C" {

using MPQueueID = struct OpaqueMPQueueID*;
using MPTaskID = struct OpaqueMPTaskID*;

/// The number of processors that can run tasks.
unsigned long MPProcessorsScheduled(void);

/// Makes a notification queue. 0, or a status that says why not; the queue is then left as it was.
std::int32_t MPCreateQueue(MPQueueID* queue);

/// Starts a task that calls `entry(parameter)` once. When `entry` returns, the message (`termination1`,
/// `termination2`, its result) is posted on `notifyQueue`, which may be null. `stackSize` 0 is the platform's
/// default; `options` are 0; `task` may be null. 0, or a status: then no task was started.
std::int32_t MPCreateTask(std::int32_t (*entry)(void*), void* parameter, unsigned long stackSize, MPQueueID notifyQueue,
                          void* termination1, void* termination2, std::uint32_t options, MPTaskID* task);

/// Takes the oldest message from a queue, waiting for one if there is none. Each of the three addresses may be null.
/// `duration` is in milliseconds when positive and in microseconds when negative; 0 does not wait and 0x7fffffff
/// waits without limit. 0 when a message was taken, -29296 when the time was up.
std::int32_t MPWaitOnQueue(MPQueueID queue, void** parameter1, void** parameter2, void** parameter3,
                           std::int32_t duration);

/// Deletes a queue. Tasks that still run may be attached to it; their messages are then dropped.
std::int32_t MPDeleteQueue(MPQueueID queue);

}  // extern "C"
#pragma GCC visibility pop

#endif

/// A wait without limit, and the status of a wait whose time was up. (The system's own names for these two are
/// enumerators there, so ours differ.)
inline constexpr std::int32_t kWaitForever = 0x7fffffff;
inline constexpr std::int32_t kWaitTimedOut = -29296;
