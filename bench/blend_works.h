// The blend modes as they are measured.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "bench/bench_picture.h"
#include "bench/row_work.h"

namespace ombrix::bench {

struct BlendWork {
    std::string_view name;
    std::int64_t mode;
};

std::span<const BlendWork> BlendWorks();
/// One of them by name.
const BlendWork& FindBlendWork(std::string_view name);

/// Calls the effect with a fill that covers all of `source` and gives its row work to `receiver`. `fillMask` may be
/// null.
void CaptureBlend(const BlendWork& work, double opacity, BenchPicture& source, BenchPicture& fill,
                  BenchPicture* fillMask, BenchPicture& destination, RowWorkReceiver receiver);

}  // namespace ombrix::bench
