// libvips, from memory to memory on one thread. It computes in floating point where numbers are not whole.
#include <vips/vips.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "bench/peers/peers.h"
#include "bench/tone_effects.h"

namespace ombrix::bench {
namespace {

struct Unreference {
    void operator()(VipsImage* image) const { g_object_unref(image); }
};
using Image = std::unique_ptr<VipsImage, Unreference>;

/// By reference: the call that gives the status sets `image`.
Image Take(int status, VipsImage*& image) {
    if (status != 0) throw std::runtime_error(vips_error_buffer());
    return Image(image);
}

Image ImageOf(const BenchPicture& picture) {
    return Image(vips_image_new_from_memory(picture.Bytes(), picture.ByteCount(), picture.Extent().width,
                                            picture.Extent().height, 4, VIPS_FORMAT_UCHAR));
}

using Operation = Image (*)(VipsImage* source);

Image Linear(VipsImage* source, double (&factors)[4], double (&offsets)[4]) {
    VipsImage* out = nullptr;
    return Take(vips_linear(source, &out, factors, offsets, 4, "uchar", TRUE, nullptr), out);
}

Image ColourFilter(VipsImage* source) {
    double factors[] = {1, 1, 1, 1};
    double offsets[] = {0, 40, -30, 7};
    return Linear(source, factors, offsets);
}

Image Brightness(VipsImage* source) {
    double factors[] = {1, 1, 1, 1};
    double offsets[] = {0, 25, 25, 25};
    return Linear(source, factors, offsets);
}

Image Contrast(VipsImage* source) {
    double factors[] = {1, 1.5625, 1.5625, 1.5625};
    double offsets[] = {0, -72, -72, -72};
    return Linear(source, factors, offsets);
}

Image Invert(VipsImage* source) {
    VipsImage* out = nullptr;
    return Take(vips_invert(source, &out, nullptr), out);
}

Image Map(VipsImage* source) {
    static const Image table = [] {
        const MapTables tables;
        std::uint8_t entries[256][4];
        for (int i = 0; i < 256; ++i) {
            entries[i][0] = static_cast<std::uint8_t>(i);
            entries[i][1] = tables.red[i];
            entries[i][2] = tables.green[i];
            entries[i][3] = tables.blue[i];
        }
        return Image(vips_image_new_from_memory_copy(entries, sizeof entries, 256, 1, 4, VIPS_FORMAT_UCHAR));
    }();
    VipsImage* out = nullptr;
    return Take(vips_maplut(source, &out, table.get(), nullptr), out);
}

const std::map<std::string, Operation> kOperations = {{"colour filter", ColourFilter},
                                                      {"brightness", Brightness},
                                                      {"invert", Invert},
                                                      {"contrast", Contrast},
                                                      {"map", Map}};

void Start() {
    static const bool started = VIPS_INIT("bench") == 0;
    if (!started) throw std::runtime_error("libvips does not start");
    vips_concurrency_set(1);
    vips_cache_set_max(0);  // else a second run would not compute
}

}  // namespace

std::function<void()> LibvipsCounterpart(const LineName& line, PictureSet& pictures) {
    const auto operation = kOperations.find(line.measured);
    if (line.table != kIntoNew || operation == kOperations.end()) return nullptr;
    Start();
    return [&pictures, operation] {
        // A run uses its pipeline up.
        const Image source = ImageOf(pictures.source);
        const Image destination = ImageOf(pictures.destination);
        const Image result = operation->second(source.get());
        if (vips_image_write(result.get(), destination.get()) != 0) throw std::runtime_error(vips_error_buffer());
    };
}

}  // namespace ombrix::bench
