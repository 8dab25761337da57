// ColorFilterEffect: shifts red, green and blue, each by an offset of its own.
#include "effects/channel_shift.h"
#include "effects/effect_class.h"
#include "effects/workers.h"

namespace ombrix {

extern REALclassDefinition ColorFilterEffectClass;

namespace {

struct ColorFilterParams {
    StdMPEffectParams head;
    std::int32_t red;  ///< -255 to 255, as the others
    std::int32_t green;
    std::int32_t blue;
};
static_assert(offsetof(ColorFilterParams, red) == 80 && offsetof(ColorFilterParams, green) == 84 &&
              offsetof(ColorFilterParams, blue) == 88);

ChannelShift FormulaOf(const ColorFilterParams& params) {
    return ChannelShift({params.red, params.green, params.blue});
}

constexpr RowWorker ColorFilterPart = kWorker<FormulaOf>;
constexpr RowWorker ColorFilterMaskedPart = kMaskedWorker<FormulaOf>;

/// The ends turn every value into 0 or 255.
constexpr bool IsChannelOffset(std::int64_t offset) { return offset >= -255 && offset <= 255; }

struct ColorFilter {
    struct Data {
        std::uint8_t ignoreAlpha = 0;
        std::int64_t red = 0;
        std::int64_t green = 0;
        std::int64_t blue = 0;
        REALobjectStruct* mask = nullptr;
    };
    using Params = ColorFilterParams;

    static std::optional<EffectWorkers> Prepare(Params& params, std::int64_t red, std::int64_t green,
                                                std::int64_t blue) {
        if (!IsChannelOffset(red) || !IsChannelOffset(green) || !IsChannelOffset(blue)) return std::nullopt;
        params.red = static_cast<std::int32_t>(red);
        params.green = static_cast<std::int32_t>(green);
        params.blue = static_cast<std::int32_t>(blue);
        return EffectWorkers{ColorFilterPart, ColorFilterMaskedPart};
    }
};

using Data = ColorFilter::Data;
using Class = EffectClass<ColorFilter, ColorFilterEffectClass, &Data::red, &Data::green, &Data::blue>;
static_assert(sizeof(Data) == 40);

constexpr REALpropertyDefinition ColorFilterEffectProperties[] = {
    StandardProperty("IgnoreAlpha", "Boolean", offsetof(Data, ignoreAlpha)),
    StandardProperty("Mask", "Picture", offsetof(Data, mask)),
    StandardProperty("Red", "Integer", offsetof(Data, red)),
    StandardProperty("Green", "Integer", offsetof(Data, green)),
    StandardProperty("Blue", "Integer", offsetof(Data, blue)),
};

const auto ColorFilterEffectMethods = Class::Methods(
    "Apply(source as Picture,red as Integer, green as Integer, blue as Integer,mask as Picture) as Picture",
    "ApplyInPlace(source as Picture, red as Integer, green as Integer, blue as Integer,mask as Picture)",
    /*flags=*/4);

}  // namespace

REALclassDefinition ColorFilterEffectClass =
    Class::Record("ColorFilterEffect", ColorFilterEffectProperties, ColorFilterEffectMethods);

}  // namespace ombrix
