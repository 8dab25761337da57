// The example picture: an evening by a lake, painted so that effects can be judged by eye.
#pragma once

#include "paint.h"

namespace ombrix::pictures {

/// The colour at a point. `y` runs from 0 at the top to 1 at the bottom, `x` from 0 to 1.5.
Color Landscape(float x, float y);

}  // namespace ombrix::pictures
