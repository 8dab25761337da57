// InvertEffect: the negative of a picture.
#include "effects/effect_class.h"
#include "effects/workers.h"

namespace ombrix {

extern REALclassDefinition InvertEffectClass;

namespace {

struct InvertParams {
    StdMPEffectParams head;
};

Negative FormulaOf(const InvertParams&) { return {}; }

constexpr RowWorker InvertPart = kWorker<FormulaOf>;
constexpr RowWorker InvertMaskedPart = kMaskedWorker<FormulaOf>;

struct Invert {
    struct Data {
        std::uint8_t ignoreAlpha = 0;
        REALobjectStruct* mask = nullptr;
    };
    using Params = InvertParams;

    static std::optional<EffectWorkers> Prepare(Params&) { return EffectWorkers{InvertPart, InvertMaskedPart}; }
};

using Data = Invert::Data;
using Class = EffectClass<Invert, InvertEffectClass>;
static_assert(sizeof(Data) == 16);

constexpr REALpropertyDefinition InvertEffectProperties[] = {
    StandardProperty("IgnoreAlpha", "Boolean", offsetof(Data, ignoreAlpha)),
    StandardProperty("Mask", "Picture", offsetof(Data, mask)),
};

const auto InvertEffectMethods = Class::Methods("Apply(source as Picture,mask as Picture) as Picture",
                                                "ApplyInPlace(source as Picture,mask as Picture)");

}  // namespace

REALclassDefinition InvertEffectClass = Class::Record("InvertEffect", InvertEffectProperties, InvertEffectMethods);

}  // namespace ombrix
