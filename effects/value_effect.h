// Shared by effects with one whole-number argument.
//
// Such an effect is a struct with
//   Params         its parameter record;
//   least, most    the values that it accepts;
//   workers        its EffectWorkers;
//   SetValue       (Params&, value): fills the record's own fields.
#pragma once

#include <array>

#include "effects/effect_class.h"

namespace ombrix {

/// The instance data.
struct ValueData {
    std::uint8_t ignoreAlpha = 0;
    std::int64_t value = 0;
    REALobjectStruct* mask = nullptr;
};
static_assert(sizeof(ValueData) == 24);

/// The property table; the effect names its value.
constexpr std::array<REALpropertyDefinition, 3> ValueProperties(const char* valueName) {
    return {StandardProperty("IgnoreAlpha", "Boolean", offsetof(ValueData, ignoreAlpha)),
            StandardProperty("Mask", "Picture", offsetof(ValueData, mask)),
            StandardProperty(valueName, "Integer", offsetof(ValueData, value))};
}

/// Adapts such an effect to EffectClass.
template <class Effect>
struct ValueEffect {
    using Data = ValueData;
    using Params = typename Effect::Params;

    static std::optional<EffectWorkers> Prepare(Params& params, std::int64_t value) {
        if (value < Effect::least || value > Effect::most) return std::nullopt;
        Effect::SetValue(params, static_cast<std::int32_t>(value));
        return Effect::workers;
    }
};

/// The methods of such an effect.
template <class Effect, REALclassDefinition& record>
struct ValueEffectClass : EffectClass<ValueEffect<Effect>, record, &ValueData::value> {
    static std::array<REALmethodDefinition, 4> Methods() {
        return EffectClass<ValueEffect<Effect>, record, &ValueData::value>::Methods(
            "Apply(source as Picture,value as Integer,mask as Picture) as Picture",
            "ApplyInPlace(source as Picture, value as Integer,mask as Picture)");
    }
};

}  // namespace ombrix
