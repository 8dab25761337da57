// The pictures that effects are tried and shown on.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cli/images/image_reader.h"
#include "cli/session.h"

namespace ombrix::cli {

/// Pictures at one scale.
struct Scene {
    host::Picture source;
    host::Picture fill;
    host::Picture mask;
};

/// A picture that a property is given.
enum class Role { Fill, Mask };

/// Shares of the picture's width and height.
struct PointShare {
    double x;
    double y;
};

/// A property's value, at any scale.
using SceneValue = std::variant<host::Value, Role, PointShare>;

struct SceneSetting {
    std::string property;
    SceneValue value;
    std::string constant;  ///< empty when the value is none
};

/// The result of an effect, or nil when it refuses.
host::Picture Applied(Session& session, const host::ClassInfo& type, const std::vector<SceneSetting>& settings,
                      const Scene& scene);

/// Sets properties to what the settings mean in the scene.
void SetIn(const Scene& scene, host::Host& host, const std::vector<SceneSetting>& settings, const host::Object& object);

/// In pixels.
std::pair<std::int64_t, std::int64_t> PointIn(PointShare share, int width, int height);

/// The given pictures, as large as a gallery shows them.
class Originals {
  public:
    /// The longer side of the picture becomes `longSide` pixels, unless it is shorter already; fill and mask become
    /// smaller alike. Without a fill the picture is its own; without a mask one is drawn. A WorkError when a file
    /// cannot be read or the mask is smaller than the picture.
    Originals(Session& session, const std::filesystem::path& picture, const std::optional<std::filesystem::path>& fill,
              const std::optional<std::filesystem::path>& mask, int longSide);

    /// Of the picture's file.
    int Width() const { return width_; }
    int Height() const { return height_; }

    const Scene& Whole() const { return whole_; }
    /// Made smaller to a longer side of `longSide` pixels.
    Scene At(Session& session, int longSide) const;
    /// An SVG file at the picture's size: a light spot, darker towards the corners.
    std::string DrawnMask() const;

  private:
    int width_, height_;
    Scene whole_;
};

/// A copy in red, green and blue, on squares of white and grey where the picture is transparent.
vips::VImage OnChecks(host::Host& host, const host::Picture& picture);

}  // namespace ombrix::cli
