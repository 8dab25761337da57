// The loops of the blend modes, for one level of the instruction set. Compiled once for each.
#include "blend/loops.h"
#include "blend/modes.h"
#include "pixels/row_loop.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

#define OMBRIX_CHECK(mode) static_assert(std::is_empty_v<mode>, "loops are given no data of a mode");
OMBRIX_BLEND_MODES(OMBRIX_CHECK)
#undef OMBRIX_CHECK

extern const ModeLoops kModeLoops[];
const ModeLoops kModeLoops[] = {
#define OMBRIX_LOOPS(mode) {RunRow<mode, NoMix, true>, RunRow<mode, OpacityMix, true>, RunRow<mode, FillMaskMix, true>},
    OMBRIX_LOOPS(Normal) OMBRIX_BLEND_MODES(OMBRIX_LOOPS)
#undef OMBRIX_LOOPS
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
