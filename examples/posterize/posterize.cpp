// A plug-in of its own with one effect, PosterizeEffect, that builds on the class MPImageFilter of another plug-in: it
// is linked with nothing of that plug-in and reaches its engine through the base data of its objects.
// docs/writing-an-effect.md walks through this file.
#include "sdk/definition_rows.h"
#include "sdk/engine_functions.h"
#include "sdk/host_calls.h"
#include "sdk/host_reference.h"
#include "sdk/plugin_main.h"

namespace {

using namespace ombrix;

/// The instance data, which the host lays right after MPImageFilter's.
struct PosterizeData {
    std::int64_t levels = 4;
    REALobjectStruct* mask = nullptr;
};

extern REALclassDefinition PosterizeEffectClass;

PosterizeData* DataOf(REALobjectStruct* object) {
    return static_cast<PosterizeData*>(REALGetClassData(object, &PosterizeEffectClass));
}

/// A table that keeps as many of the 256 values as there are levels, evenly spaced from 0 to 255, and takes every value
/// to the nearest of them.
struct LevelTable {
    std::uint8_t entries[256];

    explicit LevelTable(std::int64_t levels) {
        const auto steps = static_cast<int>(levels - 1);
        for (int value = 0; value < 256; ++value) {
            const int step = (value * steps + 127) / 255;
            entries[value] = static_cast<std::uint8_t>((step * 255 + steps / 2) / steps);
        }
    }
};

/// Calls `map(base, source, mask, params)`, a function of the engine that works with tables, with the object's levels
/// and mask; `map` has type `MapProc`. Gives nothing when the levels make no sense.
template <class MapProc>
auto Posterize(REALobjectStruct* object, REALobjectStruct* source, EngineFunction number) {
    using Result = decltype(static_cast<MapProc>(nullptr)(nullptr, nullptr, nullptr, nullptr));
    const PosterizeData& data = *DataOf(object);
    MPImageFilterData* base = BaseDataOf(DataOf(object));
    const auto map = reinterpret_cast<MapProc>(base->GetFunction(static_cast<std::int32_t>(number)));
    if (!map || data.levels < 2 || data.levels > 256) {
        base->ErrorCode = ILLEGAL_INPUT_PARAMETER;
        return Result();
    }
    const LevelTable table(data.levels);
    const HostReference mask = HostReference::Share(data.mask);
    MapParams params;
    params.redTable = params.greenTable = params.blueTable = table.entries;
    return map(base, source, mask.Get(), &params);
}

REALobjectStruct* Apply(REALobjectStruct* object, REALobjectStruct* source) {
    return Posterize<ApplyMapEffectProc>(object, source, EngineFunction::ApplyMapEffect);
}

void ApplyInPlace(REALobjectStruct* object, REALobjectStruct* source) {
    Posterize<ApplyMapEffectInPlaceProc>(object, source, EngineFunction::ApplyMapEffectInPlace);
}

void Constructor(REALobjectStruct* object) { *DataOf(object) = {}; }

void Destructor(REALobjectStruct* object) {
    if (REALobjectStruct* mask = DataOf(object)->mask) EUnlockObject(mask);
}

constexpr REALpropertyDefinition PosterizeEffectProperties[] = {
    StandardProperty("Levels", "Integer", offsetof(PosterizeData, levels)),
    StandardProperty("Mask", "Picture", offsetof(PosterizeData, mask)),
};

const REALmethodDefinition PosterizeEffectMethods[] = {
    Method(Apply, "Apply(source as Picture) as Picture"),
    Method(ApplyInPlace, "ApplyInPlace(source as Picture)"),
};

REALclassDefinition PosterizeEffectClass = ClassRecord({.name = "PosterizeEffect",
                                                        .superclass = "MPImageFilter",
                                                        .interfaces = "IGraphicsEffect,IGraphicsEffectInPlace",
                                                        .dataSize = sizeof(PosterizeData),
                                                        .constructor = Constructor,
                                                        .destructor = Destructor,
                                                        .properties = PosterizeEffectProperties,
                                                        .methods = PosterizeEffectMethods});

}  // namespace

void REALPluginMain(REALresolver resolver) {
    gResolver = resolver;
    LoadCommonEntryPoints(REALGetRBVersion());
    REALRegisterClass(&PosterizeEffectClass);
}
