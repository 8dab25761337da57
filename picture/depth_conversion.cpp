#include "picture/depth_conversion.h"

#include <optional>

#include "frame/definition_rows.h"
#include "frame/host_calls.h"
#include "frame/host_reference.h"
#include "frame/registered_classes.h"
#include "picture/picture.h"
#include "platform/core_graphics.h"

namespace ombrix {
namespace {

/// What a picture is, as the host describes it in the picture's own form.
struct PictureKind {
    bool known = false;                        ///< false when the host refused to tell
    std::optional<std::int32_t> bitsPerPixel;  ///< of a bitmap, nothing for other kinds
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

/// Draws all of `image` at the top left corner of `target`, unscaled. False when the host cannot draw.
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
    constexpr std::int64_t kWhole = -10000;  // what the host takes for "as large as it is"
    draw(graphics.Get(), image, 0, 0, kWhole, kWhole, 0, 0, kWhole, kWhole);
    return true;
}

/// A new picture of `depth` bits that looks like `src`, which is of the given kind; or null.
REALobjectStruct* Redraw(REALobjectStruct* src, const PictureKind& kind, std::int64_t depth) {
    HostReference picture(CreatePicture(kind.width, kind.height, depth));
    if (!picture || !DrawWhole(src, picture.Get())) return nullptr;
    CopyPictureMask(src, picture.Get());
    return picture.Release();
}

/// `src` when `fits(bits per pixel)`, else a picture of `depth` bits that looks like it.
template <class Fits>
REALobjectStruct* Ensure(REALobjectStruct* src, Fits fits, std::int64_t depth) {
    if (!src) return nullptr;
    const PictureKind kind = KindOf(src);
    if (!kind.known) return nullptr;
    if (kind.bitsPerPixel && fits(*kind.bitsPerPixel)) return HostReference::Share(src).Release();
    return Redraw(src, kind, depth);
}

/// The flags of both methods.
constexpr std::int64_t kMethodFlags = 0x10;

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
