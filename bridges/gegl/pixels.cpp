#include "bridges/gegl/pixels.h"

#include <algorithm>

namespace ombrix::bridge {
namespace {

ombrix_rows Rows(const std::uint8_t* base, std::int64_t width, std::int64_t height, ombrix_layout layout) {
    const bool hasAlpha = layout == OMBRIX_RGBA;
    return {sizeof(ombrix_rows),
            const_cast<std::uint8_t*>(base),
            static_cast<std::ptrdiff_t>(width * (hasAlpha ? 4 : 3)),
            width,
            height,
            layout,
            hasAlpha ? OMBRIX_ALPHA_STRAIGHT : OMBRIX_ALPHA_NONE};
}

}  // namespace

PixelEffect::PixelEffect(const Effect& effect, const Property* second) : second_(second), object_(effect.name) {}

void PixelEffect::Apply(const std::uint8_t* in, std::uint8_t* out, std::int64_t width, std::int64_t height) {
    const std::lock_guard guard(mutex_);
    object_.Apply(Rows(in, width, height, OMBRIX_RGBA), Rows(out, width, height, OMBRIX_RGBA));
}

void PixelEffect::Apply(const std::uint8_t* in, const std::uint8_t* second, std::uint8_t* out, std::int64_t width,
                        std::int64_t height) {
    const std::lock_guard guard(mutex_);
    const auto pixels = static_cast<std::size_t>(width * height);
    const auto alphaOf = [second](std::size_t i) { return second[4 * i + 3]; };
    bool isOpaque = true;
    for (std::size_t i = 0; i < pixels; ++i) isOpaque &= alphaOf(i) == 255;
    const ombrix_rows source = Rows(in, width, height, OMBRIX_RGBA);
    object_.Set(second_->name, Rows(second, width, height, OMBRIX_RGBA));
    const bool isMasked = !isOpaque && second_->shapeMask;
    if (isMasked) {
        mask_.resize(3 * pixels);
        masked_.resize(4 * pixels);
        const std::uint8_t flip = second_->shapeMask->whiteHides ? 255 : 0;
        for (std::size_t i = 0; i < pixels; ++i) {
            std::fill_n(&mask_[3 * i], 3, static_cast<std::uint8_t>(alphaOf(i) ^ flip));
        }
        object_.Set(second_->shapeMask->property, Rows(mask_.data(), width, height, OMBRIX_RGB));
        object_.Apply(source, Rows(masked_.data(), width, height, OMBRIX_RGBA));
        object_.Unset(second_->shapeMask->property);
        // A mask is a step off where it shows all or nothing, which would show the edges of what GEGL works on at a
        // time.
        for (std::size_t i = 0; i < pixels; ++i) {
            if (alphaOf(i) == 0) std::copy_n(in + 4 * i, 4, &masked_[4 * i]);
        }
    }
    object_.Apply(source, Rows(out, width, height, OMBRIX_RGBA));
    for (std::size_t i = 0; isMasked && i < pixels; ++i) {
        if (alphaOf(i) != 255) std::copy_n(&masked_[4 * i], 4, out + 4 * i);
    }
}

}  // namespace ombrix::bridge
