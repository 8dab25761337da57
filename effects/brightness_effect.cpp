// BrightnessEffect: makes a picture lighter or darker by one amount in all channels.
#include "effects/channel_shift.h"
#include "effects/value_effect.h"
#include "engine/effect_walk.h"

namespace ombrix {
namespace {

struct BrightnessParams {
    StdMPEffectParams head;
    std::int32_t value;  ///< -255 to 255
};
static_assert(offsetof(BrightnessParams, value) == 80);

ChannelShift FormulaOf(const BrightnessParams& params) { return {{params.value, params.value, params.value}}; }

std::int32_t BrightnessPart(MPParamBlock* band) { return WalkBand<BrightnessParams>(band, FormulaOf); }

std::int32_t BrightnessMaskPart(MPParamBlock* band) { return WalkMaskedBand<BrightnessParams>(band, FormulaOf); }

struct Brightness {
    using Data = ValueData;
    using Params = BrightnessParams;

    static std::optional<EffectWorkers> Prepare(Params& params, std::int64_t value) {
        if (!IsChannelOffset(value)) return std::nullopt;
        params.value = static_cast<std::int32_t>(value);
        return EffectWorkers{BrightnessPart, BrightnessMaskPart};
    }
};

using Class = ValueEffectClass<Brightness, BrightnessEffectClass>;

constexpr auto BrightnessEffectProperties = ValueProperties("BrightnessValue");
const auto BrightnessEffectMethods = Class::Methods();

}  // namespace

REALclassDefinition BrightnessEffectClass =
    Class::Record("BrightnessEffect", BrightnessEffectProperties, BrightnessEffectMethods);

}  // namespace ombrix
