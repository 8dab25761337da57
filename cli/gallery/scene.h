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

/// The given pictures, at full size.
class Originals {
  public:
    /// Without a fill the picture is its own; without a mask one is drawn. A WorkError when a file cannot be read or
    /// the mask is smaller than the picture.
    Originals(Session& session, const std::filesystem::path& picture, const std::optional<std::filesystem::path>& fill,
              const std::optional<std::filesystem::path>& mask);

    int Width() const { return picture_.Width(); }
    int Height() const { return picture_.Height(); }
    /// The longer side becomes `longSide` pixels, unless it is shorter already.
    Scene At(Session& session, int longSide) const;
    /// An SVG file at the picture's size: a light spot, darker towards the corners.
    std::string DrawnMask() const;

  private:
    host::Picture picture_, fill_, mask_;  // fill_ and mask_ may be nil
    std::filesystem::path file_;
};

/// A copy in red, green and blue, on white where the picture is transparent.
vips::VImage OnWhite(host::Host& host, const host::Picture& picture);

}  // namespace ombrix::cli
