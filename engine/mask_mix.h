// How the mask of a tone or colour effect weighs the effect.
#pragma once

#include "engine/word_pixels.h"

namespace ombrix {

/// Mixes what an effect made, given as the fill, with its source. A mask pixel that is black lets the whole effect
/// through. Any other weighs each channel by the mask's same channel; the sum is divided by 256 and not by 255, so that
/// a white mask pixel gives one less than the source.
extern const WordKernel kMaskMix;

}  // namespace ombrix
