// The host's own classes, in the same records as a plug-in's: Picture, Graphics, Point and a progress handler that
// calls the program.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "host/host_state.h"
#include "host/instance.h"
#include "host/pixel_buffer.h"

namespace ombrix::host {

inline constexpr char kPictureClass[] = "Picture";
inline constexpr char kGraphicsClass[] = "Graphics";
inline constexpr char kPointClass[] = "Point";
inline constexpr char kProgressHandlerClass[] = "ProgressHandler";

/// A picture's type in its description when it is not a bitmap.
inline constexpr std::uint32_t kDrawingPicture = 1;

struct PictureData {
    std::int64_t width = 0;               ///< pixels
    std::int64_t height = 0;              ///< rows
    std::int64_t depth = 0;               ///< bits per pixel; 0 without pixels
    std::unique_ptr<PixelBuffer> pixels;  ///< null for a drawing or a picture that could not be made
    bool isDrawing = false;
    REALobjectStruct* mask = nullptr;  ///< held

    /// Replaces pixels and mask. False, and no pixels, when they cannot be made.
    bool MakeBitmap(HostState& host, std::int64_t newWidth, std::int64_t newHeight, std::int64_t newDepth,
                    Content content);
    /// The same with pixels that belong to the program.
    bool Wrap(HostState& host, const PixelView& view);
    void DropPixels(HostState& host) { Replace(host, nullptr); }
    /// Why `newMask` cannot be the mask of `self`, whose data this is; empty when it can.
    std::string ObjectionToMask(REALobjectStruct* self, REALobjectStruct* newMask) const;
    void SetMask(HostState& host, REALobjectStruct* newMask);
    /// With `create`, makes a white one where there is none. Null without memory.
    REALobjectStruct* Mask(HostState& host, bool create);
    /// Fills in what a plug-in gets with a lock. False when there is nothing to lock.
    bool Describe(REALpictureDescription& description) const;

  private:
    bool Replace(HostState& host, std::unique_ptr<PixelBuffer> newPixels);
};

struct PointData {
    std::int64_t x;
    std::int64_t y;
};

struct ProgressHandlerData {
    std::function<void(std::int64_t, std::int64_t)> report;
};

/// An object's data. The caller knows its class.
PictureData& PictureOf(REALobjectStruct* picture);
PointData& PointOf(REALobjectStruct* point);
ProgressHandlerData& ProgressHandlerOf(REALobjectStruct* handler);
/// Lets new Graphics draw on a picture.
void AttachGraphics(HostState& host, REALobjectStruct* graphics, REALobjectStruct* picture);

// For the registry.
REALclassDefinition& PictureDefinition();
REALclassDefinition& GraphicsDefinition();
REALclassDefinition& PointDefinition();
REALclassDefinition& ProgressHandlerDefinition();

/// Rows of the records.
inline REALmethodDefinition MethodRow(REALproc function, const char* declaration) {
    return {function, 0, declaration, 0, {}};
}
/// Kept in the class's data.
inline REALpropertyDefinition StoredProperty(const char* name, const char* type, std::size_t offset) {
    return {0, name, type, 0, {kStandardAccessor}, {kStandardAccessor}, static_cast<std::int64_t>(offset), {}};
}
/// Computed by a function.
template <class Value>
REALpropertyDefinition ReadOnlyProperty(const char* name, const char* type,
                                        Value (*getter)(REALobjectStruct*, std::int64_t)) {
    return {0, name, type, 0, {.function = reinterpret_cast<REALproc>(getter)}, {kNoAccessor}, 0, {}};
}

/// A class record, its empty fields left out.
struct OwnClass {
    const char* name;
    std::size_t dataSize;
    void (*constructor)(REALobjectStruct*) = nullptr;
    void (*destructor)(REALobjectStruct*) = nullptr;
    std::span<const REALpropertyDefinition> properties = {};
    std::span<const REALmethodDefinition> methods = {};
    const char* interfaces = nullptr;
};
inline REALclassDefinition MakeDefinition(const OwnClass& own) {
    REALclassDefinition definition{};
    definition.version = kDefinitionVersion;
    definition.name = own.name;
    definition.dataSize = static_cast<std::int64_t>(own.dataSize);
    definition.constructor = own.constructor;
    definition.destructor = own.destructor;
    definition.properties = own.properties.data();
    definition.propertyCount = std::ssize(own.properties);
    definition.methods = own.methods.data();
    definition.methodCount = std::ssize(own.methods);
    definition.interfaces = own.interfaces;
    definition.flags = kClassConsoleSafe;
    return definition;
}

}  // namespace ombrix::host
