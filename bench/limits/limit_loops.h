// Loops that move bytes and do nothing else. Work that moves the same bytes can be as fast, not faster.
//
// limit_loops.cpp is built once per level of the instruction set, each time into a namespace of that level.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bench/cache_line.h"

namespace ombrix::bench {

/// Which pictures work reads and writes.
enum class Traffic {
    InPlace,        ///< reads and writes the source
    InPlaceMasked,  ///< and reads the mask
    IntoNew,        ///< reads the source, writes the destination
    Combine,        ///< reads source and fill, writes the destination
    CombineMasked,  ///< and reads the mask
};
inline constexpr std::size_t kTrafficCount = 5;

/// All addresses are multiples of kCacheLine.
struct MovedBytes {
    std::uint8_t* target;
    const std::uint8_t* sources[3];  ///< as many as the traffic reads; in place the first is the target
    std::size_t count;               ///< of each; a multiple of kCacheLine
};

/// A way to write the loops.
struct LoopForm {
    const char* name;
    void (*move[kTrafficCount])(const MovedBytes& bytes);  ///< null where the form makes no sense
};
inline constexpr std::size_t kFormCount = 8;

#if defined(__x86_64__)
namespace v4 {
extern const LoopForm kForms[kFormCount];
}
namespace v3 {
extern const LoopForm kForms[kFormCount];
}
#endif
namespace baseline {
extern const LoopForm kForms[kFormCount];
}

}  // namespace ombrix::bench
