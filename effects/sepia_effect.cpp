// SepiaEffect: a warm brown tone.
#include <cmath>

#include "effects/channel_shift.h"
#include "effects/value_effect.h"
#include "engine/effect_walk.h"

namespace ombrix {
namespace {

/// Keeps the luma of a colour and replaces its chroma by a fixed amount of the I component of YIQ; the weights are
/// those of I in red, green and blue.
///
/// A channel is the luma, a whole number, plus its share of I, cut to a whole number and saturated. So it is the luma
/// plus the whole number below the share; no share is so near to the one above that rounding would reach it.
struct SepiaTone {
    static constexpr LumaWeights weights = kRec601;
    ChannelShift shift;

    explicit SepiaTone(double strength)
        : shift{{static_cast<int>(std::floor(0.956 * strength)), static_cast<int>(std::floor(-0.272 * strength)),
                 static_cast<int>(std::floor(-1.105 * strength))}} {}
};

struct SepiaParams {
    StdMPEffectParams head;
    std::int32_t value;  ///< 10 to 55
};
static_assert(offsetof(SepiaParams, value) == 80);

SepiaTone FormulaOf(const SepiaParams& params) { return SepiaTone(params.value); }

std::int32_t SepiaPart(MPParamBlock* band) { return WalkBand<SepiaParams>(band, FormulaOf); }

std::int32_t SepiaMaskPart(MPParamBlock* band) { return WalkMaskedBand<SepiaParams>(band, FormulaOf); }

struct Sepia {
    /// A new object has the value 0, which is out of range: a program has to choose one.
    using Data = ValueData;
    using Params = SepiaParams;

    static std::optional<EffectWorkers> Prepare(Params& params, std::int64_t value) {
        if (value < 10 || value > 55) return std::nullopt;
        params.value = static_cast<std::int32_t>(value);
        return EffectWorkers{SepiaPart, SepiaMaskPart};
    }
};

using Class = ValueEffectClass<Sepia, SepiaEffectClass>;

constexpr auto SepiaEffectProperties = ValueProperties("SepiaValue");
const auto SepiaEffectMethods = Class::Methods();

}  // namespace

REALclassDefinition SepiaEffectClass = Class::Record("SepiaEffect", SepiaEffectProperties, SepiaEffectMethods);

}  // namespace ombrix
