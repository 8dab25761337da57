// The shares of the limit that the effects should reach.
#pragma once

#include <string_view>

#include "bench/limits/limit_loops.h"

namespace ombrix::bench {

/// 0: nothing is asked.
struct Bar {
    double least = 0;  ///< below is a fault
    double aim = 0;
};

/// Bars hold for one task and vectors of 512 bits.
bool BarsHold(int tasks);

/// Of a tone or colour effect on photographs; `traffic` is not that of a blend.
Bar ToneBar(std::string_view effect, Traffic traffic, int bits);

/// On greys and white paper. Lumas alone have one: their sums are whole numbers there, where rounding is hardest.
Bar ToneBarOnGreys(std::string_view effect, Traffic traffic);

/// Of a blend mode on photographs.
Bar BlendBar(std::string_view mode, bool isMixed, int bits);

}  // namespace ombrix::bench
