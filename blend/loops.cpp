#include "blend/loops.h"

#include "pixels/instruction_level.h"

namespace ombrix {

// blend/level_loops.cpp defines these, once for each level.
#define OMBRIX_DECLARE(level, space)     \
    namespace space {                    \
    extern const ModeLoops kModeLoops[]; \
    }
OMBRIX_LEVELS(OMBRIX_DECLARE)
#undef OMBRIX_DECLARE

const ModeLoops& LoopsOfMode(std::size_t mode) {
#define OMBRIX_LOOPS(level, space) space::kModeLoops,
    static constexpr const ModeLoops* kLevels[] = {OMBRIX_LEVELS(OMBRIX_LOOPS)};
#undef OMBRIX_LOOPS
    return kLevels[static_cast<int>(gInstructionLevel)][mode];
}

}  // namespace ombrix
