#include "cli/images/thumbnail.h"

#include <algorithm>
#include <cmath>

namespace ombrix::cli {

using vips::VImage;

namespace {

constexpr int kSamples = 8;  // at most, in each direction: a mean of 64 pixels looks as smooth as one of all
constexpr std::size_t kSums = 4;

int Scaled(int length, int longer) {
    if (longer <= kThumbnailSize) return length;
    return std::max(1, static_cast<int>(std::lround(static_cast<double>(length) * kThumbnailSize / longer)));
}

}  // namespace

std::vector<ThumbnailMaker::Sample> ThumbnailMaker::Samples(int length, int thumbnailLength) {
    const int each = std::clamp(length / thumbnailLength, 1, kSamples);
    const std::int64_t count = std::int64_t{thumbnailLength} * each;
    std::vector<Sample> samples;
    for (std::int64_t i = 0; i < count; ++i) {
        samples.push_back({static_cast<int>((2 * i + 1) * length / (2 * count)), static_cast<int>(i / each)});
    }
    return samples;
}

ThumbnailMaker::ThumbnailMaker(int width, int height)
    : width_(Scaled(width, std::max(width, height))),
      height_(Scaled(height, std::max(width, height))),
      columns_(Samples(width, width_)),
      rows_(Samples(height, height_)),
      sums_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) * kSums) {}

void ThumbnailMaker::Add(VipsRegion* part) {
    const VipsRect& area = part->valid;
    const int bands = part->im->Bands;
    const auto from = [](const std::vector<Sample>& samples, int at) {
        return std::ranges::lower_bound(samples, at, {}, &Sample::at);
    };
    const auto endRow = from(rows_, VIPS_RECT_BOTTOM(&area)), firstRow = from(rows_, area.top);
    if (firstRow == endRow) return;
    const auto endColumn = from(columns_, VIPS_RECT_RIGHT(&area)), firstColumn = from(columns_, area.left);
    const std::lock_guard lock(mutex_);
    for (auto row = firstRow; row != endRow; ++row) {
        const std::uint8_t* pixels = VIPS_REGION_ADDR(part, area.left, row->at);
        unsigned* sums = &sums_[static_cast<std::size_t>(row->into) * static_cast<std::size_t>(width_) * kSums];
        for (auto column = firstColumn; column != endColumn; ++column) {
            const std::uint8_t* pixel = pixels + std::ptrdiff_t{column->at - area.left} * bands;
            const unsigned alpha = bands == 4 ? pixel[3] : 255;
            unsigned* sum = sums + static_cast<std::size_t>(column->into) * kSums;
            for (int i = 0; i < 3; ++i) sum[i] += (pixel[i] * alpha + 255 * (255 - alpha)) / 255;
            ++sum[3];
        }
    }
}

Bytes ThumbnailMaker::Jpeg(std::size_t size) const {
    Bytes pixels;
    for (std::size_t i = 0; i < sums_.size(); i += kSums) {
        const unsigned count = std::max(1u, sums_[i + 3]);
        for (int c = 0; c < 3; ++c) pixels.push_back(static_cast<std::uint8_t>((sums_[i + c] + count / 2) / count));
    }
    const VImage image = VImage::new_from_memory(pixels.data(), pixels.size(), width_, height_, 3, VIPS_FORMAT_UCHAR)
                             .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    for (const int quality : {80, 60, 40, 20}) {
        VipsBlob* blob = image.jpegsave_buffer(VImage::option()->set("Q", quality)->set("strip", true));
        std::size_t length = 0;
        const auto* bytes = static_cast<const std::uint8_t*>(vips_blob_get(blob, &length));
        const Bytes jpeg(bytes, bytes + length);
        vips_area_unref(VIPS_AREA(blob));
        if (jpeg.size() <= size) return jpeg;
    }
    return {};
}

}  // namespace ombrix::cli
