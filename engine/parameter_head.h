// Fills the head of an effect's parameter record from locked pictures.
#pragma once

#include "engine/mp_image_filter.h"
#include "engine/pixel_buffer.h"

namespace ombrix {

/// All but the mask's fields and `rowsDone`. `destination` has the source's size and depth; in place it is the source.
void FillHead(StdMPEffectParams& head, const MPImageFilterData& base, const LockedPixels& source,
              const LockedPixels& destination);

/// The mask's fields; after FillHead.
void FillMaskHead(StdMPEffectParams& head, const LockedPixels& mask);

}  // namespace ombrix
