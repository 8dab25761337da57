// The loops of the blend modes, at the level in use.
#pragma once

#include <cstdint>

#include "pixels/row.h"

namespace ombrix {

/// The loops of one mode, which differ in what follows the blending: nothing, the mix by opacity, or that and the fill
/// mask.
struct ModeLoops {
    RowLoop plain;
    RowLoop withOpacity;
    RowLoop withMask;
};

/// By the place of the mode in the list of blend/modes.h, plus 1; 0 is mode normal.
const ModeLoops& LoopsOfMode(std::size_t mode);

}  // namespace ombrix
