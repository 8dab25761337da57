#include "plugin/utilities.h"

#include <optional>

#include "engine/pictures.h"
#include "platform/core_graphics.h"
#include "plugin/registered_classes.h"
#include "sdk/definition_rows.h"
#include "sdk/host_calls.h"
#include "sdk/host_reference.h"

namespace ombrix {
namespace {

struct PictureKind {
    bool known = false;                        ///< false when the host refused the lock
    std::optional<std::int32_t> bitsPerPixel;  ///< of bitmaps only
    std::int32_t width = 0;
    std::int32_t height = 0;
};

PictureKind KindOf(REALobjectStruct* picture) {
    REALpictureDescription description{};
    if (!REALLockPictureDescriptionWithNativeType(picture, &description)) return {};
    PictureKind kind{true, std::nullopt, description.width, description.height};
    if (description.type == kBitmapContextPicture && description.data) {
        const auto context = static_cast<CGContextRef>(description.data);
        kind.bitsPerPixel = static_cast<std::int32_t>(CGBitmapContextGetBitsPerPixel(context));
    }
    REALUnlockPictureDescription(picture);
    return kind;
}

/// Draws `image`, unscaled, at the top left corner of `target`. False when the host cannot.
bool DrawWhole(REALobjectStruct* image, REALobjectStruct* target) {
    REALobjectStruct* handle = nullptr;
    if (!REALGetPropValueObject(target, "Graphics", &handle)) return false;
    const HostReference graphics(handle);
    using DrawPicture =
        void (*)(REALobjectStruct * graphics, REALobjectStruct * image, std::int64_t x, std::int64_t y, std::int64_t w1,
                 std::int64_t h1, std::int64_t sx, std::int64_t sy, std::int64_t w2, std::int64_t h2);
    const auto draw = !graphics ? nullptr
                                : reinterpret_cast<DrawPicture>(REALLoadObjectMethod(
                                      graphics.Get(),
                                      "DrawPicture(image as Picture,x as Integer,y as Integer,w1 as Integer,h1 as "
                                      "Integer,sx as Integer,sy as Integer,w2 as Integer,h2 as Integer)"));
    if (!draw) return false;
    constexpr std::int64_t kWhole = -10000;  // the picture's own size
    draw(graphics.Get(), image, 0, 0, kWhole, kWhole, 0, 0, kWhole, kWhole);
    return true;
}

/// A new picture of `depth` bits with `src` drawn into it, or null.
REALobjectStruct* Redraw(REALobjectStruct* src, const PictureKind& kind, std::int64_t depth) {
    HostReference picture(CreatePicture(kind.width, kind.height, depth));
    if (!picture || !DrawWhole(src, picture.Get())) return nullptr;
    CopyPictureMask(src, picture.Get());
    return picture.Release();
}

/// Returns `src` when `fits(its bits per pixel)`, else a redrawn copy of `depth` bits, or null.
template <class Fits>
REALobjectStruct* Ensure(REALobjectStruct* src, Fits fits, std::int64_t depth) {
    if (!src) return nullptr;
    const PictureKind kind = KindOf(src);
    if (!kind.known) return nullptr;
    if (kind.bitsPerPixel && fits(*kind.bitsPerPixel)) return HostReference::Share(src).Release();
    return Redraw(src, kind, depth);
}

constexpr std::int64_t kMethodFlags = 0x10;  // of both methods

const REALmethodDefinition OmbrixUtilitiesMethods[] = {
    Method(EnsurePictureBits, "EnsurePictureBits(src as Picture,depth as Integer) as Picture", kMethodFlags),
    Method(EnsureCompatible, "EnsurePictureCompatible(src as Picture) as Picture", kMethodFlags),
};

}  // namespace

REALobjectStruct* EnsurePictureBits(REALobjectStruct* src, std::int64_t depth) {
    return Ensure(
        src, [depth](std::int32_t bits) { return bits == depth; }, depth);
}

REALobjectStruct* EnsureCompatible(REALobjectStruct* src) {
    return Ensure(
        src, [](std::int32_t bits) { return bits == 24 || bits == 32; }, 32);
}

REALmoduleDefinition OmbrixUtilitiesModule = ModuleRecord("OmbrixUtilities", OmbrixUtilitiesMethods, {});

}  // namespace ombrix
