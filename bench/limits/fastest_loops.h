// The limit of what moves the same bytes: the loops that are fastest on this machine.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/limits/limit_loops.h"
#include "bench/picture_set.h"

namespace ombrix::bench {

/// A loop over the pictures of a set, on some number of tasks.
struct LimitLoop {
    std::string form;
    std::function<void()> run;
    double gigabytesPerSecond;  ///< read and written, as the trial found
};

/// All forms of a loop, with the best instructions that the machine has, the fastest first. They are tried when a
/// traffic, a depth and a number of tasks are first asked for together. The pictures must outlive the loops.
std::vector<LimitLoop> LoopsByPace(const PictureSet& pictures, Traffic traffic, int tasks);

/// What the traffic reads and writes, in billions of bytes.
double GigabytesMoved(const PictureSet& pictures, Traffic traffic);

}  // namespace ombrix::bench
