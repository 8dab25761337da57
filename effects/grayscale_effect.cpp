// GrayscaleEffect: shades of grey, by one of four conversions.
#include "effects/effect_class.h"
#include "effects/workers.h"

namespace ombrix {

extern REALclassDefinition GrayscaleEffectClass;

namespace {

constexpr std::int64_t kNtscPal = 0;
constexpr std::int64_t kItuR = 1;
constexpr std::int64_t kAverage = 2;

/// The mean of the three channels, truncated.
constexpr GreyWeights kPlainAverage{{1, 1, 1}, 3};
/// A mean with small whole weights for the eye's share of each channel, truncated.
constexpr GreyWeights kWeightedAverage{{3, 4, 2}, 9};

struct GrayscaleParams {
    StdMPEffectParams head;
    double redWeight;  ///< these three only for the conversions with weighted sums
    double greenWeight;
    double blueWeight;
};
static_assert(offsetof(GrayscaleParams, redWeight) == 80 && offsetof(GrayscaleParams, greenWeight) == 88 &&
              offsetof(GrayscaleParams, blueWeight) == 96);

Grey SumOf(const GrayscaleParams& params) {
    return Grey(params.redWeight == kRec601.inDoubles.red ? kRec601 : kRec709);
}
Grey AverageOf(const GrayscaleParams&) { return Grey(kPlainAverage); }
Grey WeightedAverageOf(const GrayscaleParams&) { return Grey(kWeightedAverage); }

constexpr RowWorker GrayScale_NTSCPAL_ITURPart = kWorker<SumOf>;
constexpr RowWorker GrayScale_NTSCPAL_ITURMaskedPart = kMaskedWorker<SumOf>;
constexpr RowWorker GrayScale_AveragePart = kWorker<AverageOf>;
constexpr RowWorker GrayScale_AverageMaskedPart = kMaskedWorker<AverageOf>;
constexpr RowWorker GrayScale_WeightedAveragePart = kWorker<WeightedAverageOf>;
constexpr RowWorker GrayScale_WeightedAverageMaskedPart = kMaskedWorker<WeightedAverageOf>;

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
            const Rgb<double>& weights = (type == kNtscPal ? kRec601 : kRec709).inDoubles;
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
