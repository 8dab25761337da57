// What every tone or colour effect is to a host, written once: four methods, a constructor and a destructor around the
// effect's own data, the check of its arguments, and its two row workers.
//
// An effect is a struct with
//   Data      its instance data: `std::uint8_t ignoreAlpha`, its values, `REALobjectStruct* mask`, with their defaults;
//   Params    its parameter record: a `StdMPEffectParams head`, then its own fields;
//   Prepare   (Params&, values…): checks the values, fills the record's own fields and tells the workers to run, or
//             gives nothing when a value is out of range.
// effects/color_filter_effect.cpp is the one to read first.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "engine/mp_image_filter.h"
#include "frame/definition_rows.h"
#include "frame/host_calls.h"
#include "frame/host_reference.h"
#include "frame/registered_classes.h"
#include "picture/picture.h"

namespace ombrix {

/// The workers of one call.
struct EffectWorkers {
    RowWorker unmasked;
    RowWorker masked;
};

/// The type of a data member, given a pointer to it.
template <class Member>
struct TypeOfMember;
template <class Data, class Type>
struct TypeOfMember<Type Data::*> {
    using type = Type;
};

/// The methods of an effect. `record` is its class record; `values` point to the members of its data that are the
/// arguments of `Apply` between source and mask, in that order.
template <class Effect, REALclassDefinition& record, auto... values>
class EffectClass {
    using Data = typename Effect::Data;
    using Params = typename Effect::Params;

    static Data* DataOf(REALobjectStruct* object) { return static_cast<Data*>(REALGetClassData(object, &record)); }

    /// Checks the arguments of a call and fills the effect's part of the record; sets the error code if it refuses.
    template <class... Values>
    static std::optional<EffectWorkers> Prepare(MPImageFilterData* base, Params& params, REALobjectStruct* source,
                                                Values... arguments) {
        std::optional<EffectWorkers> workers;
        if (source) workers = Effect::Prepare(params, arguments...);
        if (!workers) base->ErrorCode = ILLEGAL_INPUT_PARAMETER;
        return workers;
    }

  public:
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

    /// The methods of IGraphicsEffect and IGraphicsEffectInPlace: the properties are the arguments. The mask is kept
    /// for the call, since a progress report may make the program set another.
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

    /// The method table: the declarations of the two methods with arguments, and their flags.
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
