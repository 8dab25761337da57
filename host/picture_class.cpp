#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "host/own_classes.h"
#include "host/serve.h"
#include "text/numbers.h"

namespace ombrix::host {
namespace {

void Construct(REALobjectStruct* picture) { new (&PictureOf(picture)) PictureData; }

void Destruct(REALobjectStruct* picture) {
    Serve<void>("Picture.Destructor", [&](HostState& host) { PictureOf(picture).SetMask(host, nullptr); });
    std::destroy_at(&PictureOf(picture));
}

void ConstructBitmap(REALobjectStruct* picture, std::int64_t width, std::int64_t height, std::int64_t depth) {
    constexpr char kService[] = "Picture.Constructor";
    Serve<void>(kService, [&](HostState& host) {
        if (host.Passed(picture, kService, kPictureClass) == nullptr) return;
        if (host.watch.LockCount(picture) != 0) {
            host.watch.Fault("called Picture.Constructor on a picture that is locked");
            return;
        }
        const std::optional<PixelView>& place = host.resultPlace;
        if (place && place->width == width && place->height == height && place->depth == depth &&
            PictureOf(picture).Wrap(host, *place)) {
            host.resultPlace.reset();
            host.resultPicture = picture;
            host.objects.Hold(picture);
            return;
        }
        // Effects write every pixel of the pictures that they make.
        PictureOf(picture).MakeBitmap(host, width, height, depth, Content::Any);
    });
}

REALobjectStruct* GetMask(REALobjectStruct* picture, std::uint8_t create) {
    constexpr char kService[] = "Picture.Mask";
    return Serve<REALobjectStruct*>(kService, [&](HostState& host) -> REALobjectStruct* {
        if (host.Passed(picture, kService, kPictureClass) == nullptr) return nullptr;
        REALobjectStruct* mask = PictureOf(picture).Mask(host, create != 0);
        if (mask != nullptr) host.objects.Retain(mask);
        return mask;
    });
}

void AssignMask(REALobjectStruct* picture, REALobjectStruct* mask) {
    constexpr char kService[] = "Picture.Mask";
    Serve<void>(kService, [&](HostState& host) {
        if (host.Passed(picture, kService, kPictureClass) == nullptr) return;
        if (mask != nullptr && host.Passed(mask, kService, kPictureClass) == nullptr) return;
        const std::string objection = PictureOf(picture).ObjectionToMask(picture, mask);
        if (!objection.empty()) return host.watch.Fault("assigned an impossible mask: " + objection);
        PictureOf(picture).SetMask(host, mask);
    });
}

/// New Graphics for each reader; nil when there is nothing to draw on.
REALobjectStruct* GetGraphics(REALobjectStruct* picture, std::int64_t) {
    constexpr char kService[] = "Picture.Graphics";
    return Serve<REALobjectStruct*>(kService, [&](HostState& host) -> REALobjectStruct* {
        if (host.Passed(picture, kService, kPictureClass) == nullptr || !PictureOf(picture).pixels) return nullptr;
        REALobjectStruct* graphics = host.objects.Create(*host.registry.FindClass(kGraphicsClass));
        if (graphics == nullptr) return nullptr;
        AttachGraphics(host, graphics, picture);
        return graphics;
    });
}

template <std::int64_t PictureData::*member>
std::int64_t Get(REALobjectStruct* picture, std::int64_t) {
    return PictureOf(picture).*member;
}

const REALpropertyDefinition kProperties[] = {
    ReadOnlyProperty("Width", "Integer", Get<&PictureData::width>),
    ReadOnlyProperty("Height", "Integer", Get<&PictureData::height>),
    ReadOnlyProperty("Depth", "Integer", Get<&PictureData::depth>),
    ReadOnlyProperty("Graphics", "Graphics", GetGraphics),
};

const REALmethodDefinition kMethods[] = {
    MethodRow(reinterpret_cast<REALproc>(&ConstructBitmap),
              "Constructor(width as Integer, height as Integer, Depth as Integer)"),
    MethodRow(reinterpret_cast<REALproc>(&GetMask), "Mask(Create as Boolean) as Picture"),
    MethodRow(reinterpret_cast<REALproc>(&AssignMask), "Mask(assigns newMask as Picture)"),
};

REALclassDefinition pictureDefinition = MakeDefinition({
    .name = kPictureClass,
    .dataSize = sizeof(PictureData),
    .constructor = Construct,
    .destructor = Destruct,
    .properties = kProperties,
    .methods = kMethods,
});

}  // namespace

REALclassDefinition& PictureDefinition() { return pictureDefinition; }

PictureData& PictureOf(REALobjectStruct* picture) {
    return *static_cast<PictureData*>(ClassData(picture, pictureDefinition));
}

bool PictureData::MakeBitmap(HostState& host, std::int64_t newWidth, std::int64_t newHeight, std::int64_t newDepth,
                             Content content) {
    pixels.reset();  // first, since memory may not do for both
    return Replace(host, PixelBuffer::Make(newWidth, newHeight, newDepth, content));
}

bool PictureData::Wrap(HostState& host, const PixelView& view) { return Replace(host, PixelBuffer::Wrap(view)); }

bool PictureData::Replace(HostState& host, std::unique_ptr<PixelBuffer> newPixels) {
    SetMask(host, nullptr);
    pixels = std::move(newPixels);
    isDrawing = false;
    width = pixels ? pixels->Shape().width : 0;
    height = pixels ? pixels->Shape().height : 0;
    depth = pixels ? pixels->Shape().depth : 0;
    return pixels != nullptr;
}

std::string PictureData::ObjectionToMask(REALobjectStruct* self, REALobjectStruct* newMask) const {
    if (newMask == nullptr) return {};
    const PictureData& other = PictureOf(newMask);
    if (other.width != width || other.height != height) {
        return "the mask has " + text::Size(other.width, other.height) + " pixels and the picture " +
               text::Size(width, height);
    }
    // Pictures that hold each other would never be destroyed.
    for (REALobjectStruct* each = newMask; each != nullptr; each = PictureOf(each).mask) {
        if (each == self) return "a picture cannot be its own mask, or the mask of its mask";
    }
    return {};
}

void PictureData::SetMask(HostState& host, REALobjectStruct* newMask) {
    if (newMask != nullptr) host.objects.Hold(newMask);
    REALobjectStruct* old = std::exchange(mask, newMask);
    if (old != nullptr) host.objects.LetGo(old);
}

REALobjectStruct* PictureData::Mask(HostState& host, bool create) {
    if (mask != nullptr || !create) return mask;
    REALobjectStruct* made = host.objects.Create(*host.registry.FindClass(kPictureClass));
    if (made == nullptr) return nullptr;
    if (PictureOf(made).MakeBitmap(host, width, height, 32, Content::Zeros)) {
        const PixelView& view = PictureOf(made).pixels->View();
        for (std::int64_t y = 0; y < height; ++y) std::memset(view.Row(y), 0xff, view.UsedRowBytes());
        SetMask(host, made);
    }
    host.objects.Release(made);
    return mask;
}

bool PictureData::Describe(REALpictureDescription& description) const {
    if (!pixels && !isDrawing) return false;
    description = {};
    description.type = pixels ? kBitmapContextPicture : kDrawingPicture;
    description.data = pixels ? pixels->Context() : nullptr;
    description.width = static_cast<std::int32_t>(width);
    description.height = static_cast<std::int32_t>(height);
    return true;
}

}  // namespace ombrix::host
