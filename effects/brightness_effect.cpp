// BrightnessEffect: makes a picture lighter or darker by one amount in all channels.
#include "effects/channel_shift.h"
#include "effects/value_effect.h"
#include "effects/workers.h"

namespace ombrix {

extern REALclassDefinition BrightnessEffectClass;

namespace {

struct BrightnessParams {
    StdMPEffectParams head;
    std::int32_t value;  ///< -255 to 255
};
static_assert(offsetof(BrightnessParams, value) == 80);

ChannelShift FormulaOf(const BrightnessParams& params) {
    return ChannelShift({params.value, params.value, params.value});
}

constexpr RowWorker BrightnessPart = kWorker<FormulaOf>;
constexpr RowWorker BrightnessMaskPart = kMaskedWorker<FormulaOf>;

struct Brightness {
    using Params = BrightnessParams;
    static constexpr std::int64_t least = -255;
    static constexpr std::int64_t most = 255;
    static constexpr EffectWorkers workers{BrightnessPart, BrightnessMaskPart};

    static void SetValue(Params& params, std::int32_t value) { params.value = value; }
};

using Class = ValueEffectClass<Brightness, BrightnessEffectClass>;

constexpr auto BrightnessEffectProperties = ValueProperties("BrightnessValue");
const auto BrightnessEffectMethods = Class::Methods();

}  // namespace

REALclassDefinition BrightnessEffectClass =
    Class::Record("BrightnessEffect", BrightnessEffectProperties, BrightnessEffectMethods);

}  // namespace ombrix
