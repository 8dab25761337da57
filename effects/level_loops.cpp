// The loops of the effects' formulas, for one level of the instruction set. Compiled once for each.
#include "effects/loops.h"
#include "pixels/row_loop.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

extern const EffectLoops kEffectLoops[];
const EffectLoops kEffectLoops[] = {
#define OMBRIX_LOOPS(formula) {RunRow<formula, NoMix, false>, RunRow<formula, EffectMaskMix, false>},
    OMBRIX_EFFECT_FORMULAS(OMBRIX_LOOPS)
#undef OMBRIX_LOOPS
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
