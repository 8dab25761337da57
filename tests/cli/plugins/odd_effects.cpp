// Effects whose needs can only be found by trying.
#include "sdk/definition_rows.h"
#include "sdk/engine_functions.h"
#include "sdk/host_calls.h"
#include "sdk/host_reference.h"
#include "sdk/plugin_main.h"

namespace {

using namespace ombrix;

/// Maps all channels through `entry`.
template <class Entry>
REALobjectStruct* Mapped(MPImageFilterData* base, REALobjectStruct* source, Entry&& entry) {
    const auto map = reinterpret_cast<ApplyMapEffectProc>(
        base->GetFunction(static_cast<std::int32_t>(EngineFunction::ApplyMapEffect)));
    std::uint8_t table[256];
    for (int value = 0; value < 256; ++value) table[value] = static_cast<std::uint8_t>(entry(value));
    MapParams params;
    params.redTable = params.greenTable = params.blueTable = table;
    return map(base, source, nullptr, &params);
}

REALobjectStruct* Refuse(MPImageFilterData* base) {
    base->ErrorCode = ILLEGAL_INPUT_PARAMETER;
    return nullptr;
}

constexpr const char* kApply = "Apply(source as Picture) as Picture";

// ---- A strength of 33 to 47, initially 0; constants of another Integer; a switch ----------------------------

struct NarrowData {
    std::int64_t strength;
    std::int64_t kind;
    bool coarse;
};

extern REALclassDefinition NarrowEffectClass;

REALobjectStruct* ApplyNarrow(REALobjectStruct* object, REALobjectStruct* source) {
    auto* data = static_cast<NarrowData*>(REALGetClassData(object, &NarrowEffectClass));
    MPImageFilterData* base = BaseDataOf(data);
    if (data->strength < 33 || data->strength > 47 || data->kind < 2 || data->kind > 3) return Refuse(base);
    return Mapped(base, source, [data](int value) {
        const int stronger = static_cast<int>(value * data->strength / 47);
        const int result = data->kind == 2 ? stronger : 255 - stronger;
        return data->coarse ? result & 0xc0 : result;
    });
}

void ConstructNarrow(REALobjectStruct* object) {
    *static_cast<NarrowData*>(REALGetClassData(object, &NarrowEffectClass)) = {0, 2, false};
}

constexpr REALpropertyDefinition NarrowProperties[] = {
    StandardProperty("Strength", "Integer", offsetof(NarrowData, strength)),
    StandardProperty("Kind", "Integer", offsetof(NarrowData, kind)),
    StandardProperty("Coarse", "Boolean", offsetof(NarrowData, coarse)),
};
const REALmethodDefinition NarrowMethods[] = {Method(ApplyNarrow, kApply)};
constexpr REALconstantDefinition NarrowConstants[] = {Constant("KIND_PLAIN = 2"), Constant("KIND_REVERSED = 3")};

REALclassDefinition NarrowEffectClass = ClassRecord({.name = "NarrowEffect",
                                                     .superclass = "MPImageFilter",
                                                     .interfaces = "IGraphicsEffect",
                                                     .dataSize = sizeof(NarrowData),
                                                     .constructor = ConstructNarrow,
                                                     .properties = NarrowProperties,
                                                     .methods = NarrowMethods,
                                                     .constants = NarrowConstants});

// ---- A picture that is needed, and one that is not ----------------------------------------------------------

struct NeedyData {
    REALobjectStruct* over;
    REALobjectStruct* aside;
};

extern REALclassDefinition NeedyEffectClass;

REALobjectStruct* ApplyNeedy(REALobjectStruct* object, REALobjectStruct* source) {
    auto* data = static_cast<NeedyData*>(REALGetClassData(object, &NeedyEffectClass));
    if (!data->over) return nullptr;
    return Mapped(BaseDataOf(data), source, [](int value) { return 255 - value; });
}

constexpr REALpropertyDefinition NeedyProperties[] = {
    StandardProperty("Aside", "Picture", offsetof(NeedyData, aside)),
    StandardProperty("Over", "Picture", offsetof(NeedyData, over)),
};
const REALmethodDefinition NeedyMethods[] = {Method(ApplyNeedy, kApply)};

void DestroyNeedy(REALobjectStruct* object) {
    const auto* data = static_cast<NeedyData*>(REALGetClassData(object, &NeedyEffectClass));
    for (REALobjectStruct* picture : {data->over, data->aside}) {
        if (picture) EUnlockObject(picture);
    }
}

REALclassDefinition NeedyEffectClass = ClassRecord({.name = "NeedyEffect",
                                                    .superclass = "MPImageFilter",
                                                    .interfaces = "IGraphicsEffect",
                                                    .dataSize = sizeof(NeedyData),
                                                    .destructor = DestroyNeedy,
                                                    .properties = NeedyProperties,
                                                    .methods = NeedyMethods});

// ---- Depends on the whole picture: adds its width and height to all channels -----------------------------------

struct SizeData {
    std::int64_t unused;
};

extern REALclassDefinition SizeEffectClass;

REALobjectStruct* ApplySize(REALobjectStruct* object, REALobjectStruct* source) {
    std::int64_t width = 0, height = 0;
    REALGetPropValueInteger(source, "Width", &width);
    REALGetPropValueInteger(source, "Height", &height);
    return Mapped(BaseDataOf(REALGetClassData(object, &SizeEffectClass)), source,
                  [=](int value) { return value + width + height; });
}

const REALmethodDefinition SizeMethods[] = {Method(ApplySize, kApply)};

REALclassDefinition SizeEffectClass = ClassRecord({.name = "SizeEffect",
                                                   .superclass = "MPImageFilter",
                                                   .interfaces = "IGraphicsEffect",
                                                   .dataSize = sizeof(SizeData),
                                                   .methods = SizeMethods});

// ---- Always refuses -----------------------------------------------------------------------------------------

struct StubbornData {
    std::int64_t value;
};

REALobjectStruct* ApplyStubborn(REALobjectStruct*, REALobjectStruct*) { return nullptr; }

constexpr REALpropertyDefinition StubbornProperties[] = {
    StandardProperty("Value", "Integer", offsetof(StubbornData, value)),
};
const REALmethodDefinition StubbornMethods[] = {Method(ApplyStubborn, kApply)};

REALclassDefinition StubbornEffectClass = ClassRecord({.name = "StubbornEffect",
                                                       .superclass = "MPImageFilter",
                                                       .interfaces = "IGraphicsEffect",
                                                       .dataSize = sizeof(StubbornData),
                                                       .properties = StubbornProperties,
                                                       .methods = StubbornMethods});

}  // namespace

void REALPluginMain(REALresolver resolver) {
    gResolver = resolver;
    LoadCommonEntryPoints(REALGetRBVersion());
    for (REALclassDefinition* definition :
         {&NarrowEffectClass, &NeedyEffectClass, &SizeEffectClass, &StubbornEffectClass}) {
        REALRegisterClass(definition);
    }
}
