// ContrastEffect: stretches the channels about their middle, 128, or flattens them towards it.
#include <algorithm>

#include "effects/value_effect.h"
#include "engine/row_walk.h"

namespace ombrix {
namespace {

/// Multiplies each channel's distance from 128 by a factor, in double precision. Results saturate at 0 and 255 and are
/// cut, not rounded: at a factor of 1.0201 the value 127 becomes 126 and 129 stays.
struct ContrastStretch {
    double factor;

    int Stretch(int source) const {
        const double stretched = (source - 128) * factor + 128.0;
        return static_cast<int>(std::min(std::max(stretched, 0.0), 255.0));
    }

    Rgb<int> operator()(Rgb<int> source) const {
        return {Stretch(source.red), Stretch(source.green), Stretch(source.blue)};
    }
};

struct ContrastParams {
    StdMPEffectParams head;
    double factor;  ///< 0.0 (all grey) to 4.0
};
static_assert(offsetof(ContrastParams, factor) == 80);

ContrastStretch FormulaOf(const ContrastParams& params) { return {params.factor}; }

std::int32_t ContrastPart(MPParamBlock* band) { return WalkBand<ContrastParams>(band, FormulaOf); }

std::int32_t ContrastMaskPart(MPParamBlock* band) { return WalkMaskedBand<ContrastParams>(band, FormulaOf); }

struct Contrast {
    using Data = ValueData;
    using Params = ContrastParams;

    /// The factor grows with the square of the value, so that steps look alike over the whole range.
    static std::optional<EffectWorkers> Prepare(Params& params, std::int64_t value) {
        if (value < -100 || value > 100) return std::nullopt;
        const double root = (static_cast<double>(value) + 100.0) / 100.0;
        params.factor = root * root;
        return EffectWorkers{ContrastPart, ContrastMaskPart};
    }
};

using Class = ValueEffectClass<Contrast, ContrastEffectClass>;

constexpr auto ContrastEffectProperties = ValueProperties("ContrastValue");
const auto ContrastEffectMethods = Class::Methods();

}  // namespace

REALclassDefinition ContrastEffectClass =
    Class::Record("ContrastEffect", ContrastEffectProperties, ContrastEffectMethods);

}  // namespace ombrix
