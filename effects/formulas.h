// All formulas of the effects. A new one is its header and a line in the list.
#pragma once

#include "effects/channel_shift.h"
#include "effects/channel_tables.h"
#include "effects/contrast_stretch.h"
#include "effects/grey.h"
#include "effects/negative.h"
#include "effects/sepia_tone.h"

#define OMBRIX_EFFECT_FORMULAS(FORMULA) \
    FORMULA(ChannelShift)               \
    FORMULA(ContrastStretch)            \
    FORMULA(Negative)                   \
    FORMULA(Grey)                       \
    FORMULA(SepiaTone)                  \
    FORMULA(ChannelTables)
