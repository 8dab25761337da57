// An effect on an image of libvips, region by region where it works pixel by pixel.
#pragma once

#include <optional>
#include <utility>
#include <vector>
#include <vips/vips8>

#include "bridges/common/effects.h"

namespace ombrix::bridge {

/// Values for the properties of an effect.
struct Settings {
    std::vector<std::pair<const Property*, Default>> values;
    std::vector<std::pair<const Property*, vips::VImage>> pictures;
};

class Work {
  public:
    /// `effect` has to outlive it. An Error when a mask is too small.
    Work(const Effect& effect, vips::VImage source, const Settings& settings);

    /// The result, in sRGB of 8 bits with the bands that the source has beyond its colours. The Work has to outlive it.
    vips::VImage Result();

  private:
    struct Picture {
        const Property* property;
        vips::VImage image;
    };
    struct Sequence;

    /// Has a mask show what of a transparent picture shows.
    void ShowShape(std::size_t index);
    bool CanGoByRegions() const;
    vips::VImage ByRegions();
    vips::VImage AsAWhole() const;
    Object NewObject() const;
    std::optional<Point> PointOf(Role role) const;
    void SetPart(Sequence& sequence, const VipsRect& area) const;
    void Generate(Sequence& sequence, VipsRegion* out) const;

    static void* Start(VipsImage* out, void* work, void*);
    static int Generate(VipsRegion* out, void* sequence, void* work, void*, gboolean*);
    static int Stop(void* sequence, void* work, void*);

    const Effect& effect_;
    std::vector<std::pair<const Property*, Default>> values_;
    std::vector<Picture> pictures_;
    vips::VImage source_;                ///< of three or four bands
    std::optional<vips::VImage> extra_;  ///< bands beyond
};

}  // namespace ombrix::bridge
