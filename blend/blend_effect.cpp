// BlendEffect: lays a fill picture over a source in one of 24 modes, with an opacity and a mask of the fill.
#include <algorithm>
#include <cmath>

#include "blend/blend_workers.h"
#include "blend/placement.h"
#include "engine/destination.h"
#include "engine/locked_pixels.h"
#include "engine/parameter_head.h"
#include "engine/run_workers.h"
#include "sdk/definition_rows.h"
#include "sdk/host_calls.h"
#include "sdk/host_reference.h"
#include "sdk/mp_image_filter.h"

namespace ombrix {

extern REALclassDefinition BlendEffectClass;

namespace {

struct BlendEffectData {
    std::int32_t blendMode = kNormalMode;
    double opacity = 1.0;
    REALobjectStruct* fillPicture = nullptr;
    REALobjectStruct* fillMask = nullptr;
    REALobjectStruct* location = nullptr;
    REALobjectStruct* size = nullptr;
};
static_assert(sizeof(BlendEffectData) == 48);

/// Tasks when the program leaves the number open: blending reads two pictures and computes more.
constexpr std::int32_t kAutoTaskCount = 3;

BlendEffectData* DataOf(REALobjectStruct* self) {
    return static_cast<BlendEffectData*>(REALGetClassData(self, &BlendEffectClass));
}

/// A coordinate of a point, or `otherwise` when there is no point or it cannot be read.
std::int64_t Coordinate(REALobjectStruct* point, const char* name, std::int64_t otherwise) {
    std::int64_t value = 0;
    return point && REALGetPropValueInteger(point, name, &value) ? value : otherwise;
}

/// Clamps to 0.0 to 1.0; NaN counts as 1.0.
double UsableOpacity(double opacity) { return std::isnan(opacity) ? 1.0 : std::clamp(opacity, 0.0, 1.0); }

/// Whether the fill mask has a pixel for each of the fill's that is used.
bool Covers(const LockedPixels& mask, const CoveredRegion& region) {
    return region.Empty() || (mask.Width() >= region.clippedLeft + (region.right - region.left) &&
                              mask.Height() >= region.bottom - region.originY);
}

void SetPlace(BlendParams& params, const CoveredRegion& region, const LockedPixels& fill) {
    params.fillXOffset = fill.BytesPerPixel() * region.clippedLeft;
    params.fillOriginY = region.originY;
    params.regionLeft = region.left;
    params.regionTop = region.top;
    params.regionRight = region.right;
    params.regionBottom = region.bottom;
    params.fillBase = fill.Base();
    params.fillRowBytes = fill.RowBytes();
    params.fillBytesPerPixel = fill.BytesPerPixel();
}

/// Sets what depends on mode and opacity; returns the workers.
EffectWorkers SetMode(BlendParams& params, std::int32_t mode, double opacity) {
    params.sourceWeight = static_cast<std::int32_t>((1.0 - opacity) * 256.0);
    params.fillWeight = static_cast<std::int32_t>(256.0 * opacity);
    params.loops = &FindModeLoops(mode);
    params.blendProc = nullptr;
    if (mode == kNormalMode) return {BlendPart, BlendMaskedPart};
    params.blendProc = FindBlendProc(mode);
    if (opacity == 1.0) return {BlendSpecialPartNoOpacity, BlendSpecialMaskedPartNoOpacity};
    return {BlendSpecialPart, BlendSpecialMaskedPart};
}

/// The method Apply with all arguments; not the driver's ApplyEffect, which blending does not go through. Sets the
/// error code only when it fails: a success leaves that of an earlier failure.
REALobjectStruct* ApplyEffect(REALobjectStruct* self, REALobjectStruct* source, REALobjectStruct* fillPicture,
                              double opacity, REALobjectStruct* fillMask, REALobjectStruct* location,
                              REALobjectStruct* size) {
    BlendEffectData* data = DataOf(self);
    MPImageFilterData* base = BaseDataOf(data);
    if (!source || !fillPicture) return Fail(base, INVALID_SOURCE_IMAGE);
    const std::int64_t x = Coordinate(location, "x", 0);
    const std::int64_t y = Coordinate(location, "y", 0);

    LockedPixels below(source);
    LockedPixels fill(fillPicture);
    if (!below.Usable() || !fill.Usable()) return Fail(base, INVALID_SOURCE_IMAGE);
    Destination destination(below);
    if (!destination) return Fail(base, UNABLE_TO_CREATE_DESTINATION);

    const Extent used{Coordinate(size, "x", fill.Width()), Coordinate(size, "y", fill.Height())};
    const CoveredRegion region = PlaceFill(x, y, used, {fill.Width(), fill.Height()}, {below.Width(), below.Height()});
    BlendParams params;
    FillHead(params.head, *base, below, destination.Pixels());
    SetPlace(params, region, fill);
    const EffectWorkers workers = SetMode(params, data->blendMode, UsableOpacity(opacity));
    const ErrorCode outcome =
        RunWorkers(*base, params.head, workers, fillMask, kAutoTaskCount, [&](const LockedPixels& mask) {
            params.maskXOffset = mask.BytesPerPixel() * region.clippedLeft;
            return Covers(mask, region);
        });

    fill.Unlock();
    below.Unlock();
    return outcome == NO_ERROR ? destination.Finish() : Fail(base, outcome);
}

/// The method Apply of IGraphicsEffect, which takes its arguments from the properties. It holds the objects, since a
/// progress report may run a program that sets others.
REALobjectStruct* ApplyEffect2(REALobjectStruct* self, REALobjectStruct* source) {
    const BlendEffectData data = *DataOf(self);
    const HostReference fillPicture = HostReference::Share(data.fillPicture);
    const HostReference fillMask = HostReference::Share(data.fillMask);
    const HostReference location = HostReference::Share(data.location);
    const HostReference size = HostReference::Share(data.size);
    return ApplyEffect(self, source, data.fillPicture, data.opacity, data.fillMask, data.location, data.size);
}

std::int64_t GetBlendMode(REALobjectStruct* self, std::int64_t /*parameter*/) { return DataOf(self)->blendMode; }

/// Accepts any value: what is not a mode blends as multiply and reads back unchanged.
void SetBlendMode(REALobjectStruct* self, std::int64_t /*parameter*/, std::int64_t value) {
    DataOf(self)->blendMode = static_cast<std::int32_t>(value);
    if (value != kNormalMode && !BlendHandlers[0]) FillBlendHandlers();
}

void Constructor(REALobjectStruct* self) { *DataOf(self) = {}; }

void Destructor(REALobjectStruct* self) {
    const BlendEffectData& data = *DataOf(self);
    for (REALobjectStruct* held : {data.fillPicture, data.fillMask, data.location, data.size}) {
        if (held) EUnlockObject(held);
    }
}

const REALpropertyDefinition BlendEffectProperties[] = {
    CustomProperty("BlendMode", "Integer", GetBlendMode, SetBlendMode),
    StandardProperty("FillPicture", "Picture", offsetof(BlendEffectData, fillPicture)),
    StandardProperty("FillMask", "Picture", offsetof(BlendEffectData, fillMask)),
    StandardProperty("Location", "Point", offsetof(BlendEffectData, location)),
    StandardProperty("Size", "Point", offsetof(BlendEffectData, size)),
    StandardProperty("Opacity", "Double", offsetof(BlendEffectData, opacity)),
};

const REALmethodDefinition BlendEffectMethods[] = {
    Method(ApplyEffect,
           "Apply(source as Picture, fillPicture as Picture,opacity as Double,fillMask as Picture,location as "
           "Point,size as Point) as Picture"),
    Method(ApplyEffect2, "Apply(source as Picture) as Picture"),
};

constexpr REALconstantDefinition BlendEffectConstants[] = {
    Constant("MODE_NORMAL = 0"),       Constant("MODE_MULTIPLY = 1"),      Constant("MODE_SCREEN = 2"),
    Constant("MODE_OVERLAY = 3"),      Constant("MODE_DARKEN = 4"),        Constant("MODE_LIGHTEN = 5"),
    Constant("MODE_COLOR_DODGE = 6"),  Constant("MODE_COLOR_BURN = 7"),    Constant("MODE_SOFT_LIGHT = 8"),
    Constant("MODE_HARD_LIGHT = 9"),   Constant("MODE_DIFFERENCE = 10"),   Constant("MODE_EXCLUSION = 11"),
    Constant("MODE_HUE = 12"),         Constant("MODE_SATURATION = 13"),   Constant("MODE_COLOR = 14"),
    Constant("MODE_LUMINOSITY = 15"),  Constant("MODE_PIN_LIGHT = 16"),    Constant("MODE_SHARP_LIGHT = 17"),
    Constant("MODE_VIVID_LIGHT = 18"), Constant("MODE_LINEAR_LIGHT = 19"), Constant("MODE_POWER_LIGHT = 20"),
    Constant("MODE_LINEAR_BURN = 21"), Constant("MODE_LINEAR_DODGE = 22"), Constant("MODE_ADD = 23"),
};

}  // namespace

REALclassDefinition BlendEffectClass = ClassRecord({.name = "BlendEffect",
                                                    .superclass = "MPImageFilter",
                                                    .interfaces = "IGraphicsEffect",
                                                    .dataSize = sizeof(BlendEffectData),
                                                    .constructor = Constructor,
                                                    .destructor = Destructor,
                                                    .properties = BlendEffectProperties,
                                                    .methods = BlendEffectMethods,
                                                    .constants = BlendEffectConstants});

}  // namespace ombrix
