// SepiaEffect: a warm brown tone.
#include <algorithm>

#include "effects/value_effect.h"
#include "engine/row_walk.h"

namespace ombrix {
namespace {

/// Keeps the luma of a colour (Rec. 601) and replaces its chroma by a fixed amount of the I component of YIQ; the
/// weights are those of I in red, green and blue.
struct SepiaTone {
    double red;    ///< added to the luma
    double green;  ///< taken from it
    double blue;   ///< taken from it

    explicit SepiaTone(double strength) : red(0.956 * strength), green(0.272 * strength), blue(1.105 * strength) {}

    /// The sum goes to single precision before it is cut to a byte.
    static int Tone(double sum) {
        const auto tone = static_cast<float>(sum);
        return static_cast<int>(std::min(std::max(tone, 0.0f), 255.0f));
    }

    Rgb<int> operator()(Rgb<int> source) const {
        // Truncated, and the sum of the products can fall just short of a whole number: grey 128 has luma 127.
        const auto luma = static_cast<int>((source.red * 0.299 + source.green * 0.587) + source.blue * 0.114);
        return {Tone(luma + red), Tone(luma - green), Tone(luma - blue)};
    }
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
