// pixman, on opaque pixels. Its operators change the lower of the two pictures, where our blend writes a third. Its
// mask has one byte per pixel, with the opacity in it.
#include <pixman.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bench/blend_modes.h"
#include "bench/peers/peers.h"

namespace ombrix::bench {
namespace {

struct Unreference {
    void operator()(pixman_image_t* image) const { pixman_image_unref(image); }
};
using Image = std::unique_ptr<pixman_image_t, Unreference>;

Image ImageOf(const BenchPicture& picture) {
    return Image(pixman_image_create_bits(PIXMAN_x8r8g8b8, picture.Extent().width, picture.Extent().height,
                                          reinterpret_cast<std::uint32_t*>(picture.Bytes()),
                                          static_cast<int>(picture.RowBytes())));
}

Image OpaqueGrey(int value) {
    const auto channel = static_cast<std::uint16_t>(257 * value);
    const pixman_color_t colour{channel, channel, channel, 0xffff};
    return Image(pixman_image_create_solid_fill(&colour));
}

/// Lets the fill through, by the opacity, where our mask is black.
Image MaskOf(const BenchPicture& picture) {
    const Size size = picture.Extent();
    Image mask(pixman_image_create_bits(PIXMAN_a8, size.width, size.height, nullptr, 0));
    auto* row = reinterpret_cast<std::uint8_t*>(pixman_image_get_data(mask.get()));
    for (int y = 0; y < size.height; ++y, row += pixman_image_get_stride(mask.get())) {
        for (int x = 0; x < size.width; ++x) {
            row[x] = static_cast<std::uint8_t>((255 - picture.Row(y)[4 * x + 1]) * kMixedOpacity);
        }
    }
    return mask;
}

const std::map<std::string, pixman_op_t> kOperators = {
    {"normal", PIXMAN_OP_OVER},
    {"multiply", PIXMAN_OP_MULTIPLY},
    {"screen", PIXMAN_OP_SCREEN},
    {"overlay", PIXMAN_OP_OVERLAY},
    {"darken", PIXMAN_OP_DARKEN},
    {"lighten", PIXMAN_OP_LIGHTEN},
    {"colour dodge", PIXMAN_OP_COLOR_DODGE},
    {"colour burn", PIXMAN_OP_COLOR_BURN},
    {"soft light", PIXMAN_OP_SOFT_LIGHT},
    {"hard light", PIXMAN_OP_HARD_LIGHT},
    {"difference", PIXMAN_OP_DIFFERENCE},
    {"exclusion", PIXMAN_OP_EXCLUSION},
    {"hue", PIXMAN_OP_HSL_HUE},
    {"saturation", PIXMAN_OP_HSL_SATURATION},
    {"colour", PIXMAN_OP_HSL_COLOR},
    {"luminosity", PIXMAN_OP_HSL_LUMINOSITY},
    {"linear dodge", PIXMAN_OP_ADD},
    {"add", PIXMAN_OP_ADD},
};

/// Lays `upper` over all of `lower`; `mask` may be null.
std::function<void()> Composite(pixman_op_t op, Image upper, Image mask, Image lower, Size size) {
    const std::shared_ptr<pixman_image_t> sharedUpper = std::move(upper);
    const std::shared_ptr<pixman_image_t> sharedMask = std::move(mask);
    const std::shared_ptr<pixman_image_t> sharedLower = std::move(lower);
    return [=] {
        pixman_image_composite32(op, sharedUpper.get(), sharedMask.get(), sharedLower.get(), 0, 0, 0, 0, 0, 0,
                                 size.width, size.height);
    };
}

}  // namespace

std::function<void()> PixmanCounterpart(const LineName& line, PictureSet& pictures) {
    const Size size = pictures.source.Extent();
    if (line.table == kInPlace && line.measured == "brightness") {
        return Composite(PIXMAN_OP_ADD, OpaqueGrey(25), nullptr, ImageOf(pictures.source), size);
    }
    if (line.table == kInPlace && line.measured == "invert") {
        return Composite(PIXMAN_OP_DIFFERENCE, OpaqueGrey(255), nullptr, ImageOf(pictures.source), size);
    }
    const bool isMixed = line.table == kBlendMixed;
    if ((line.table != kBlend && !isMixed) || !kOperators.contains(line.measured)) return nullptr;
    return Composite(kOperators.at(line.measured), ImageOf(pictures.fill), isMixed ? MaskOf(pictures.mask) : nullptr,
                     ImageOf(pictures.source), size);
}

}  // namespace ombrix::bench
