// GrayscaleEffect: shades of grey, by one of four conversions.
#include "effects/effect_class.h"
#include "engine/effect_walk.h"

namespace ombrix {
namespace {

constexpr std::int64_t kNtscPal = 0;
constexpr std::int64_t kItuR = 1;
constexpr std::int64_t kAverage = 2;

constexpr Rgb<int> Grey(int value) { return {value, value, value}; }

/// The luma, by either standard's weights.
struct WeightedSum {
    LumaWeights weights;
};

/// The mean of the three channels, truncated.
struct PlainAverage {
    Rgb<int> operator()(Rgb<int> source) const { return Grey((source.red + source.green + source.blue) / 3); }
};

/// A mean with small whole weights for the eye's share of each channel, truncated.
struct WeightedAverage {
    Rgb<int> operator()(Rgb<int> source) const {
        return Grey((3 * source.red + 4 * source.green + 2 * source.blue) / 9);
    }
};

struct GrayscaleParams {
    StdMPEffectParams head;
    double redWeight;  ///< these three only for the conversions with weighted sums
    double greenWeight;
    double blueWeight;
};
static_assert(offsetof(GrayscaleParams, redWeight) == 80 && offsetof(GrayscaleParams, greenWeight) == 88 &&
              offsetof(GrayscaleParams, blueWeight) == 96);

WeightedSum SumOf(const GrayscaleParams& params) { return {{params.redWeight, params.greenWeight, params.blueWeight}}; }
PlainAverage AverageOf(const GrayscaleParams&) { return {}; }
WeightedAverage WeightedAverageOf(const GrayscaleParams&) { return {}; }

std::int32_t GrayScale_NTSCPAL_ITURPart(MPParamBlock* band) { return WalkBand<GrayscaleParams>(band, SumOf); }
std::int32_t GrayScale_NTSCPAL_ITURMaskedPart(MPParamBlock* band) {
    return WalkMaskedBand<GrayscaleParams>(band, SumOf);
}
std::int32_t GrayScale_AveragePart(MPParamBlock* band) { return WalkBand<GrayscaleParams>(band, AverageOf); }
std::int32_t GrayScale_AverageMaskedPart(MPParamBlock* band) {
    return WalkMaskedBand<GrayscaleParams>(band, AverageOf);
}
std::int32_t GrayScale_WeightedAveragePart(MPParamBlock* band) {
    return WalkBand<GrayscaleParams>(band, WeightedAverageOf);
}
std::int32_t GrayScale_WeightedAverageMaskedPart(MPParamBlock* band) {
    return WalkMaskedBand<GrayscaleParams>(band, WeightedAverageOf);
}

struct Grayscale {
    struct Data {
        std::uint8_t ignoreAlpha = 0;
        std::int64_t type = kAverage;
        REALobjectStruct* mask = nullptr;
    };
    using Params = GrayscaleParams;

    /// No type is refused: what is not one of the first three is the weighted average.
    static std::optional<EffectWorkers> Prepare(Params& params, std::int64_t type) {
        if (type == kNtscPal || type == kItuR) {
            const LumaWeights& weights = type == kNtscPal ? kRec601 : kRec709;
            params.redWeight = weights.red;
            params.greenWeight = weights.green;
            params.blueWeight = weights.blue;
            return EffectWorkers{GrayScale_NTSCPAL_ITURPart, GrayScale_NTSCPAL_ITURMaskedPart};
        }
        if (type == kAverage) return EffectWorkers{GrayScale_AveragePart, GrayScale_AverageMaskedPart};
        return EffectWorkers{GrayScale_WeightedAveragePart, GrayScale_WeightedAverageMaskedPart};
    }
};

using Data = Grayscale::Data;
using Class = EffectClass<Grayscale, GrayscaleEffectClass, &Data::type>;
static_assert(sizeof(Data) == 24);

constexpr REALpropertyDefinition GrayscaleEffectProperties[] = {
    StandardProperty("IgnoreAlpha", "Boolean", offsetof(Data, ignoreAlpha)),
    StandardProperty("Mask", "Picture", offsetof(Data, mask)),
    StandardProperty("GrayscaleType", "Integer", offsetof(Data, type)),
};

const auto GrayscaleEffectMethods =
    Class::Methods("Apply(source as Picture,grayscaleTypeValue as Integer,mask as Picture) as Picture",
                   "ApplyInPlace(source as Picture,grayscaleTypeValue as Integer,mask as Picture)");

constexpr REALconstantDefinition GrayscaleEffectConstants[] = {
    Constant("NTSC_PAL = 0"),
    Constant("ITU_R = 1"),
    Constant("AVERAGE = 2"),
    Constant("WEIGHTEDAVERAGE = 3"),
};

}  // namespace

REALclassDefinition GrayscaleEffectClass =
    Class::Record("GrayscaleEffect", GrayscaleEffectProperties, GrayscaleEffectMethods, GrayscaleEffectConstants);

}  // namespace ombrix
