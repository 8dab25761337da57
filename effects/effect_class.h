// The methods, constructor and destructor that every tone and colour effect has.
//
// An effect is a struct with
//   Data      its instance data with defaults: `std::uint8_t ignoreAlpha`, its values, `REALobjectStruct* mask`;
//   Params    its parameter record: `StdMPEffectParams head`, then its own fields;
//   Prepare   (Params&, values…): fills the record's own fields and returns the workers; nothing when a value is out of
//             range.
// Read effects/color_filter_effect.cpp first.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "engine/pictures.h"
#include "engine/run_workers.h"
#include "sdk/definition_rows.h"
#include "sdk/host_calls.h"
#include "sdk/host_reference.h"
#include "sdk/mp_image_filter.h"

namespace ombrix {

/// The type of the member that a pointer to member is for.
template <class Member>
struct TypeOfMember;
template <class Data, class Type>
struct TypeOfMember<Type Data::*> {
    using type = Type;
};

/// An effect's methods. `record` is its class record; `values` are pointers to the members of its data that `Apply`
/// takes between source and mask, in that order.
template <class Effect, REALclassDefinition& record, auto... values>
class EffectClass {
    using Data = typename Effect::Data;
    using Params = typename Effect::Params;

    static Data* DataOf(REALobjectStruct* object) { return static_cast<Data*>(REALGetClassData(object, &record)); }

    /// Checks a call's arguments and fills the record's own fields, or sets the error code.
    template <class... Values>
    static std::optional<EffectWorkers> Prepare(MPImageFilterData* base, Params& params, REALobjectStruct* source,
                                                Values... arguments) {
        std::optional<EffectWorkers> workers;
        if (source) workers = Effect::Prepare(params, arguments...);
        if (!workers) Fail(base, ILLEGAL_INPUT_PARAMETER);
        return workers;
    }

  public:
    /// The methods Apply and ApplyInPlace with all arguments. The driver's functions of these names are reached through
    /// `base`.
    static REALobjectStruct* ApplyEffect(REALobjectStruct* object, REALobjectStruct* source,
                                         typename TypeOfMember<decltype(values)>::type... arguments,
                                         REALobjectStruct* mask) {
        Data* data = DataOf(object);
        MPImageFilterData* base = BaseDataOf(data);
        Params params;
        const auto workers = Prepare(base, params, source, arguments...);
        if (!workers) return nullptr;
        REALobjectStruct* result =
            base->ApplyEffect(base, &params.head, workers->unmasked, workers->masked, source, mask, kToneTaskCount);
        if (result && !data->ignoreAlpha) CopyPictureMask(source, result);
        return result;
    }

    static void ApplyEffectInPlace(REALobjectStruct* object, REALobjectStruct* source,
                                   typename TypeOfMember<decltype(values)>::type... arguments, REALobjectStruct* mask) {
        MPImageFilterData* base = BaseDataOf(DataOf(object));
        Params params;
        const auto workers = Prepare(base, params, source, arguments...);
        if (!workers) return;
        base->ApplyEffectInPlace(base, &params.head, workers->unmasked, workers->masked, source, mask, kToneTaskCount);
    }

    /// The methods of IGraphicsEffect and IGraphicsEffectInPlace, which take their arguments from the properties. They
    /// hold the mask, since a progress report may run a program that sets another.
    static REALobjectStruct* IEffectApply(REALobjectStruct* object, REALobjectStruct* source) {
        Data* data = DataOf(object);
        const HostReference mask = HostReference::Share(data->mask);
        return ApplyEffect(object, source, (data->*values)..., mask.Get());
    }

    static void IEffectApplyInPlace(REALobjectStruct* object, REALobjectStruct* source) {
        Data* data = DataOf(object);
        const HostReference mask = HostReference::Share(data->mask);
        ApplyEffectInPlace(object, source, (data->*values)..., mask.Get());
    }

    static void Constructor(REALobjectStruct* object) { *DataOf(object) = Data{}; }

    static void Destructor(REALobjectStruct* object) {
        if (REALobjectStruct* mask = DataOf(object)->mask) EUnlockObject(mask);
    }

    /// The method table. Takes the declarations and the flags of the two methods with all arguments.
    static std::array<REALmethodDefinition, 4> Methods(const char* apply, const char* applyInPlace,
                                                       std::int64_t flags = 0) {
        return {Method(ApplyEffect, apply, flags), Method(ApplyEffectInPlace, applyInPlace, flags),
                Method(IEffectApply, "Apply(source as Picture) as Picture"),
                Method(IEffectApplyInPlace, "ApplyInPlace(source as Picture)")};
    }

    static REALclassDefinition Record(const char* name, std::span<const REALpropertyDefinition> properties,
                                      std::span<const REALmethodDefinition> methods,
                                      std::span<const REALconstantDefinition> constants = {}) {
        return ClassRecord({.name = name,
                            .superclass = "MPImageFilter",
                            .interfaces = "IGraphicsEffect,IGraphicsEffectInPlace",
                            .dataSize = sizeof(Data),
                            .constructor = Constructor,
                            .destructor = Destructor,
                            .properties = properties,
                            .methods = methods,
                            .constants = constants});
    }
};

}  // namespace ombrix
