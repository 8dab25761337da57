// ContrastEffect: stretches the channels about their middle, 128, or flattens them towards it.
#include "effects/contrast_line.h"
#include "effects/value_effect.h"
#include "engine/effect_walk.h"

namespace ombrix {
namespace {

/// What Stretched() gives for each channel, by the line of the factor.
struct ContrastStretch {
    ContrastLine line;

    class ByBytes {
      public:
        ByBytes(const ContrastStretch& stretch, const WordFormat&)
            : multiplier_(stretch.line.multiplier),
              shift_(0x10000 >> stretch.line.bits),
              up_(stretch.line.up),
              down_(stretch.line.down),
              most_((256 << stretch.line.bits) - 1) {}

        Lane operator()(Place place, Lane source) const {
            const Lane product = HighProduct(source << 8, multiplier_.At(place));
            return HighProduct(Min(DifferenceFromZero(product + up_, down_), most_), shift_.At(place));
        }

      private:
        BlockConstants multiplier_;
        BlockConstants
            shift_;  ///< a product's upper half, for want of a shift by a variable in g++'s vectors of 16 bits
        Lane up_;
        Lane down_;
        Lane most_;
    };
};

struct ContrastParams {
    StdMPEffectParams head;
    double factor;  ///< part of the record; the workers take its line
    ContrastLine line;
};
static_assert(offsetof(ContrastParams, factor) == 80);

ContrastStretch FormulaOf(const ContrastParams& params) { return {params.line}; }

std::int32_t ContrastPart(MPParamBlock* band) { return WalkBand<ContrastParams>(band, FormulaOf); }

std::int32_t ContrastMaskPart(MPParamBlock* band) { return WalkMaskedBand<ContrastParams>(band, FormulaOf); }

struct Contrast {
    using Data = ValueData;
    using Params = ContrastParams;

    static std::optional<EffectWorkers> Prepare(Params& params, std::int64_t value) {
        if (value < -kMostContrast || value > kMostContrast) return std::nullopt;
        params.factor = ContrastFactor(value);
        params.line = kContrastLines[static_cast<std::size_t>(value + kMostContrast)];
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
