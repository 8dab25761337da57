// The blend modes as they are measured.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "bench/bench_picture.h"
#include "bench/worker_call.h"

namespace ombrix::bench {

struct BlendMode {
    std::string_view name;
    std::int64_t number;
};

std::span<const BlendMode> BlendModes();
const BlendMode& FindBlendMode(std::string_view name);

/// The opacity where there is one.
inline constexpr double kMixedOpacity = 0.7;

/// Blends with a fill that covers all of `source` and gives the worker call to `receiver`. `fillMask` may be null.
void CaptureBlend(const BlendMode& mode, double opacity, BenchPicture& source, BenchPicture& fill,
                  BenchPicture* fillMask, BenchPicture& destination, WorkerCallReceiver receiver);

}  // namespace ombrix::bench
