// The loops of the effects' formulas, at the level in use.
#pragma once

#include "effects/formulas.h"
#include "pixels/row.h"

namespace ombrix {

/// The loops of one formula.
struct EffectLoops {
    RowLoop plain;
    RowLoop masked;
};

enum class EffectFormula {
#define OMBRIX_NAME(formula) formula,
    OMBRIX_EFFECT_FORMULAS(OMBRIX_NAME)
#undef OMBRIX_NAME
};

/// The number of a formula; not defined for one that effects/formulas.h does not list.
template <class Formula>
struct EffectFormulaOf;
#define OMBRIX_NUMBER(formula)                                         \
    template <>                                                        \
    struct EffectFormulaOf<formula> {                                  \
        static constexpr EffectFormula value = EffectFormula::formula; \
    };
OMBRIX_EFFECT_FORMULAS(OMBRIX_NUMBER)
#undef OMBRIX_NUMBER

const EffectLoops& LoopsOf(EffectFormula formula);

}  // namespace ombrix
