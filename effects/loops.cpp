#include "effects/loops.h"

#include "pixels/instruction_level.h"

namespace ombrix {

// effects/level_loops.cpp defines these, once for each level.
#define OMBRIX_DECLARE(level, space)         \
    namespace space {                        \
    extern const EffectLoops kEffectLoops[]; \
    }
OMBRIX_LEVELS(OMBRIX_DECLARE)
#undef OMBRIX_DECLARE

const EffectLoops& LoopsOf(EffectFormula formula) {
#define OMBRIX_LOOPS(level, space) space::kEffectLoops,
    static constexpr const EffectLoops* kLevels[] = {OMBRIX_LEVELS(OMBRIX_LOOPS)};
#undef OMBRIX_LOOPS
    return kLevels[static_cast<int>(gInstructionLevel)][static_cast<int>(formula)];
}

}  // namespace ombrix
