// ContrastEffect: stretches the channels about their middle, 128, or flattens them towards it.
#include "effects/contrast_line.h"
#include "effects/value_effect.h"
#include "effects/workers.h"

namespace ombrix {

extern REALclassDefinition ContrastEffectClass;

namespace {

struct ContrastParams {
    StdMPEffectParams head;
    double factor;  ///< for code outside that reads the record; the workers take the line
    const ContrastStretch* line;
};
static_assert(offsetof(ContrastParams, factor) == 80);

ContrastStretch FormulaOf(const ContrastParams& params) { return *params.line; }

constexpr RowWorker ContrastPart = kWorker<FormulaOf>;
constexpr RowWorker ContrastMaskPart = kMaskedWorker<FormulaOf>;

struct Contrast {
    using Params = ContrastParams;
    static constexpr std::int64_t least = -kMostContrast;
    static constexpr std::int64_t most = kMostContrast;
    static constexpr EffectWorkers workers{ContrastPart, ContrastMaskPart};

    static void SetValue(Params& params, std::int32_t value) {
        params.factor = ContrastFactor(value);
        params.line = &kContrastLines[static_cast<std::size_t>(std::int64_t{value} + kMostContrast)];
    }
};

using Class = ValueEffectClass<Contrast, ContrastEffectClass>;

constexpr auto ContrastEffectProperties = ValueProperties("ContrastValue");
const auto ContrastEffectMethods = Class::Methods();

}  // namespace

REALclassDefinition ContrastEffectClass =
    Class::Record("ContrastEffect", ContrastEffectProperties, ContrastEffectMethods);

}  // namespace ombrix
