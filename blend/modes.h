// All blend modes, in the order of their numbers from 1 on: a mode's name is that of its formula.
#pragma once

#include "blend/channel_modes.h"
#include "blend/colour_modes.h"

#define OMBRIX_BLEND_MODES(MODE) \
    MODE(Multiply)               \
    MODE(Screen)                 \
    MODE(Overlay)                \
    MODE(Darken)                 \
    MODE(Lighten)                \
    MODE(ColorDodge)             \
    MODE(ColorBurn)              \
    MODE(SoftLight)              \
    MODE(HardLight)              \
    MODE(Difference)             \
    MODE(Exclusion)              \
    MODE(Hue)                    \
    MODE(Saturation)             \
    MODE(Color)                  \
    MODE(Luminosity)             \
    MODE(PinLight)               \
    MODE(SharpLight)             \
    MODE(VividLight)             \
    MODE(LinearLight)            \
    MODE(PowerLight)             \
    MODE(LinearBurn)             \
    MODE(LinearDodge)            \
    MODE(Add)
