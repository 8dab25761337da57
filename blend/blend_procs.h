// The blend modes as functions of single pixels, and the table that finds them by number.
#pragma once

#include <array>
#include <cstdint>

#include "blend/modes.h"

namespace ombrix {

/// Combines one pixel of the source with one of the fill. Each pointer is the first of four bytes, of which the
/// channels lie at RED_PIX, GREEN_PIX and BLUE_PIX; the result's fourth byte is the source's.
using BlendProc = void (*)(const std::uint8_t* source, const std::uint8_t* fill, std::uint8_t* result);

// BlendMultiplyProc and the 22 others.
#define OMBRIX_DECLARE(mode) \
    void Blend##mode##Proc(const std::uint8_t* source, const std::uint8_t* fill, std::uint8_t* result);
OMBRIX_BLEND_MODES(OMBRIX_DECLARE)
#undef OMBRIX_DECLARE

/// The mode that has no proc.
inline constexpr std::int32_t kNormalMode = 0;
inline constexpr std::size_t kBlendProcCount = [] {
    std::size_t count = 0;
#define OMBRIX_COUNT(mode) ++count;
    OMBRIX_BLEND_MODES(OMBRIX_COUNT)
#undef OMBRIX_COUNT
    return count;
}();

/// The procs of modes 1 and up, at mode - 1. A null first entry means that the table is not filled yet.
extern std::array<BlendProc, kBlendProcCount> BlendHandlers;

/// Fills the table. On the host's thread only, before workers that need it run.
void FillBlendHandlers();

/// Where a mode other than 0 stands in the table: what is not a mode counts as multiply.
std::size_t BlendHandlerIndex(std::int32_t mode);

/// The proc of a mode other than 0, from the filled table.
BlendProc FindBlendProc(std::int32_t mode);

}  // namespace ombrix
