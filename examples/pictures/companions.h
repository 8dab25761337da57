// The pictures that go with the example picture: masks and fills.
#pragma once

#include "paint.h"

namespace ombrix::pictures {

// Coordinates as in the landscape: `y` from 0 to 1 downwards, `x` on the same scale.

/// A mask for a vignette: black in the middle of a picture of 1.5 × 1, so that an effect acts in full there, and
/// white towards the edges, where it does not act.
Color Vignette(float x, float y);

/// A fill for blending, 1.5 × 1: lights out of focus on warm, grainy paper.
Color Texture(float x, float y);

/// A logo, 2.5 × 1: a sun over waves, on a ground of one colour.
Color Logo(float x, float y);

/// The logo's mask: black inside its shape, white around it.
Color LogoMask(float x, float y);

}  // namespace ombrix::pictures
