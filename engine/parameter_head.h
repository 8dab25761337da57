// Fills the head of a parameter record from locked pictures.
#pragma once

#include "engine/locked_pixels.h"
#include "sdk/mp_image_filter.h"

namespace ombrix {

/// Fills all but `rowsDone` and the mask's fields. `destination` has the source's size and depth, or is the source.
void FillHead(StdMPEffectParams& head, const MPImageFilterData& base, const LockedPixels& source,
              const LockedPixels& destination);

/// Fills the mask's fields, after FillHead.
void FillMaskHead(StdMPEffectParams& head, const LockedPixels& mask);

}  // namespace ombrix
