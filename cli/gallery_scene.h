// What the gallery's effects are tried and shown on: the picture and its companions, all to the same scale.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cli/image_reader.h"
#include "cli/session.h"

namespace ombrix::cli {

/// The pictures at one scale. They belong together: a place or a size in one is the same part of all.
struct Scene {
    host::Picture source;
    host::Picture fill;
    host::Picture mask;
};

/// Which picture of the scene a property is given.
enum class Role { Fill, Mask };

/// A point as shares of the picture's width and height, so that it means the same at every scale.
struct PointShare {
    double x;
    double y;
};

/// The value of a property, in a scene of any scale.
using SceneValue = std::variant<host::Value, Role, PointShare>;

struct SceneSetting {
    std::string property;  ///< as registered
    SceneValue value;
    std::string constant;  ///< name of the constant that the value is; empty when it is none
};

/// The result of the class's effect on the scene's picture, with its properties set; nil when the effect refuses.
host::Picture Applied(Session& session, const host::ClassInfo& type, const std::vector<SceneSetting>& settings,
                      const Scene& scene);

/// Sets the properties of an object to what the settings mean in a scene.
void SetIn(const Scene& scene, host::Host& host, const std::vector<SceneSetting>& settings, const host::Object& object);

/// The point that a share means in a picture of the size.
std::pair<std::int64_t, std::int64_t> PointIn(PointShare share, int width, int height);

/// The pictures as they were given, to make scenes of any scale from.
class Originals {
  public:
    /// Reads the files. Without a fill the picture itself is one; without a mask one is drawn.
    /// A WorkError when a file cannot be read, or the mask is smaller than the picture.
    Originals(Session& session, const std::filesystem::path& picture, const std::optional<std::filesystem::path>& fill,
              const std::optional<std::filesystem::path>& mask);

    int Width() const { return picture_.Width(); }
    int Height() const { return picture_.Height(); }
    /// The scene with the longer side of its picture `longSide` pixels, or less when the picture is smaller.
    Scene At(Session& session, int longSide) const;
    /// The drawn mask, at the size of the picture, as the bytes of an SVG file: a light spot that darkens towards the
    /// corners.
    std::string DrawnMask() const;

  private:
    host::Picture picture_, fill_, mask_;  // fill_ and mask_ are nil when they were not given
    std::filesystem::path file_;
};

/// The pixels of a 24- or 32-bit picture as red, green and blue, on white where they are transparent; a copy.
vips::VImage OnWhite(Session& session, const host::Picture& picture);

}  // namespace ombrix::cli
