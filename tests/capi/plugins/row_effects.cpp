// Effects that rows cannot be given to as they lie: such as look beyond a pixel, use alpha, or make pictures on the
// way.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/core_graphics.h"
#include "sdk/definition_rows.h"
#include "sdk/engine_functions.h"
#include "sdk/host_calls.h"
#include "sdk/host_reference.h"
#include "sdk/plugin_main.h"

namespace {

using namespace ombrix;

struct NoData {
    std::int64_t unused;
};

struct HoardData {
    REALobjectStruct* source;  ///< of the last call
    REALobjectStruct* result;
};

extern REALclassDefinition MirrorEffectClass, FadeEffectClass, TwiceEffectClass, HoardEffectClass;

REALobjectStruct* Inverted(MPImageFilterData* base, REALobjectStruct* source) {
    const auto map = reinterpret_cast<ApplyMapEffectProc>(
        base->GetFunction(static_cast<std::int32_t>(EngineFunction::ApplyMapEffect)));
    std::uint8_t table[256];
    for (int value = 0; value < 256; ++value) table[value] = static_cast<std::uint8_t>(255 - value);
    MapParams params;
    params.redTable = params.greenTable = params.blueTable = table;
    return map(base, source, nullptr, &params);
}

/// Calls `change(row, width, bytesPerPixel)` for the rows of a picture, which it gives back.
template <class Change>
REALobjectStruct* WithRows(REALobjectStruct* picture, Change change) {
    REALpictureDescription description;
    if (!picture || !REALLockPictureDescription(picture, &description, kBitmapContextPicture)) return picture;
    const auto context = static_cast<CGContextRef>(description.data);
    auto* row = static_cast<std::uint8_t*>(CGBitmapContextGetData(context));
    for (int y = 0; y < description.height; ++y) {
        change(row, description.width, static_cast<std::ptrdiff_t>(CGBitmapContextGetBitsPerPixel(context) / 8));
        row += CGBitmapContextGetBytesPerRow(context);
    }
    REALUnlockPictureDescription(picture);
    return picture;
}

/// Inverts, and turns rows around, alpha included.
REALobjectStruct* ApplyMirror(REALobjectStruct* object, REALobjectStruct* source) {
    return WithRows(Inverted(BaseDataOf(REALGetClassData(object, &MirrorEffectClass)), source),
                    [](std::uint8_t* row, std::ptrdiff_t width, std::ptrdiff_t bytes) {
                        for (std::ptrdiff_t x = 0; x < width / 2; ++x) {
                            std::swap_ranges(row + x * bytes, row + (x + 1) * bytes, row + (width - 1 - x) * bytes);
                        }
                    });
}

/// Inverts; then red is alpha, and alpha is green.
REALobjectStruct* ApplyFade(REALobjectStruct* object, REALobjectStruct* source) {
    return WithRows(Inverted(BaseDataOf(REALGetClassData(object, &FadeEffectClass)), source),
                    [](std::uint8_t* row, std::ptrdiff_t width, std::ptrdiff_t bytes) {
                        for (std::ptrdiff_t x = 0; x < width; ++x, row += bytes) {
                            row[bytes - 3] = bytes == 4 ? row[0] : 255;
                            if (bytes == 4) row[0] = row[2];
                        }
                    });
}

/// Inverts twice: the first picture of the right size is not the result.
REALobjectStruct* ApplyTwice(REALobjectStruct* object, REALobjectStruct* source) {
    MPImageFilterData* base = BaseDataOf(REALGetClassData(object, &TwiceEffectClass));
    const HostReference once(Inverted(base, source));
    return Inverted(base, once.Get());
}

bool HasPixels(REALobjectStruct* picture) {
    REALpictureDescription description;
    if (!picture || !REALLockPictureDescription(picture, &description, kBitmapContextPicture)) return false;
    REALUnlockPictureDescription(picture);
    return true;
}

void ForgetHoard(REALobjectStruct* object) {
    auto* data = static_cast<HoardData*>(REALGetClassData(object, &HoardEffectClass));
    for (REALobjectStruct** picture : {&data->source, &data->result}) {
        if (*picture) EUnlockObject(*picture);
        *picture = nullptr;
    }
}

/// Inverts, and keeps both pictures; refuses when it can still see those of the last call.
REALobjectStruct* ApplyHoard(REALobjectStruct* object, REALobjectStruct* source) {
    auto* data = static_cast<HoardData*>(REALGetClassData(object, &HoardEffectClass));
    if (HasPixels(data->source) || HasPixels(data->result)) return nullptr;
    ForgetHoard(object);
    data->source = source;
    data->result = Inverted(BaseDataOf(data), source);
    for (REALobjectStruct* picture : {data->source, data->result}) ELockObject(picture);
    return data->result;
}

constexpr const char* kApply = "Apply(source as Picture) as Picture";
const REALmethodDefinition MirrorMethods[] = {Method(ApplyMirror, kApply)};
const REALmethodDefinition FadeMethods[] = {Method(ApplyFade, kApply)};
const REALmethodDefinition TwiceMethods[] = {Method(ApplyTwice, kApply)};

REALclassDefinition MirrorEffectClass = ClassRecord({.name = "MirrorEffect",
                                                     .superclass = "MPImageFilter",
                                                     .interfaces = "IGraphicsEffect",
                                                     .dataSize = sizeof(NoData),
                                                     .methods = MirrorMethods});
REALclassDefinition FadeEffectClass = ClassRecord({.name = "FadeEffect",
                                                   .superclass = "MPImageFilter",
                                                   .interfaces = "IGraphicsEffect",
                                                   .dataSize = sizeof(NoData),
                                                   .methods = FadeMethods});
REALclassDefinition TwiceEffectClass = ClassRecord({.name = "TwiceEffect",
                                                    .superclass = "MPImageFilter",
                                                    .interfaces = "IGraphicsEffect",
                                                    .dataSize = sizeof(NoData),
                                                    .methods = TwiceMethods});

const REALmethodDefinition HoardMethods[] = {Method(ApplyHoard, kApply)};
REALclassDefinition HoardEffectClass = ClassRecord({.name = "HoardEffect",
                                                    .superclass = "MPImageFilter",
                                                    .interfaces = "IGraphicsEffect",
                                                    .dataSize = sizeof(HoardData),
                                                    .destructor = ForgetHoard,
                                                    .methods = HoardMethods});

}  // namespace

void REALPluginMain(REALresolver resolver) {
    gResolver = resolver;
    LoadCommonEntryPoints(REALGetRBVersion());
    for (REALclassDefinition* definition :
         {&MirrorEffectClass, &FadeEffectClass, &TwiceEffectClass, &HoardEffectClass}) {
        REALRegisterClass(definition);
    }
}
