// SepiaEffect: a warm brown tone.
#include "effects/value_effect.h"
#include "effects/workers.h"

namespace ombrix {

extern REALclassDefinition SepiaEffectClass;

namespace {

struct SepiaParams {
    StdMPEffectParams head;
    std::int32_t value;  ///< 10 to 55
};
static_assert(offsetof(SepiaParams, value) == 80);

SepiaTone FormulaOf(const SepiaParams& params) { return SepiaTone(params.value); }

constexpr RowWorker SepiaPart = kWorker<FormulaOf>;
constexpr RowWorker SepiaMaskPart = kMaskedWorker<FormulaOf>;

/// A new object has the value 0, which is out of range: a program has to choose one.
struct Sepia {
    using Params = SepiaParams;
    static constexpr std::int64_t least = 10;
    static constexpr std::int64_t most = 55;
    static constexpr EffectWorkers workers{SepiaPart, SepiaMaskPart};

    static void SetValue(Params& params, std::int32_t value) { params.value = value; }
};

using Class = ValueEffectClass<Sepia, SepiaEffectClass>;

constexpr auto SepiaEffectProperties = ValueProperties("SepiaValue");
const auto SepiaEffectMethods = Class::Methods();

}  // namespace

REALclassDefinition SepiaEffectClass = Class::Record("SepiaEffect", SepiaEffectProperties, SepiaEffectMethods);

}  // namespace ombrix
