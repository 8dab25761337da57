// What the effects share whose one argument is a whole number.
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

/// The methods of such an effect.
template <class Effect, REALclassDefinition& record>
struct ValueEffectClass : EffectClass<Effect, record, &ValueData::value> {
    static std::array<REALmethodDefinition, 4> Methods() {
        return EffectClass<Effect, record, &ValueData::value>::Methods(
            "Apply(source as Picture,value as Integer,mask as Picture) as Picture",
            "ApplyInPlace(source as Picture, value as Integer,mask as Picture)");
    }
};

}  // namespace ombrix
