// What tests look at within a level: the operations on vectors, and the conversions between colours.
#pragma once

#include "pixels/instruction_level.h"
#include "pixels/row.h"

namespace ombrix::testing {

struct LevelProbes {
    /// Compares each intrinsic with its plain form. Names the one that differs, or gives "".
    const char* (*differingOperation)();
    /// Rows of colours whose channels become hue, lightness and saturation; and back.
    RowLoop toHls;
    RowLoop toRgb;
};

const LevelProbes& ProbesOf(InstructionLevel level);

}  // namespace ombrix::testing
