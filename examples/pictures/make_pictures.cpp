// Makes the example pictures: make_pictures FOLDER. They are in the repository, so this runs only to change them.
#include <cstdio>
#include <exception>
#include <string>
#include <vector>
#include <vips/vips8>

#include "companions.h"
#include "landscape.h"

namespace ombrix::pictures {

namespace {

struct Picture {
    const char* file;  // with the options for how it is written
    Color (*paint)(float x, float y);
    int width, height;
    int channels;
};

constexpr Picture kPictures[] = {
    {"photo.jpg[Q=86,optimize_coding,strip]", Landscape, 1200, 800, 3},
    {"texture.jpg[Q=80,optimize_coding,strip]", Texture, 1200, 800, 3},
    {"vignette.png[compression=9]", Vignette, 1200, 800, 1},
    {"logo.png[compression=9]", Logo, 200, 80, 3},
    {"logo-mask.png[compression=9]", LogoMask, 200, 80, 1},
};

std::uint8_t ToByte(float value) { return static_cast<std::uint8_t>(std::lround(255 * std::clamp(value, 0.0f, 1.0f))); }

/// The mean of points spread evenly over a pixel, so that edges are smooth.
Color PaintPixel(const Picture& picture, int column, int row) {
    constexpr int kPoints = 3;  // a side
    Color sum;
    for (int point = 0; point < kPoints * kPoints; ++point) {
        const float across = (static_cast<float>(point % kPoints) + 0.5f) / kPoints;
        const float down = (static_cast<float>(point / kPoints) + 0.5f) / kPoints;
        const auto scale = static_cast<float>(picture.height);
        const Color color =
            picture.paint((static_cast<float>(column) + across) / scale, (static_cast<float>(row) + down) / scale);
        sum = sum + Color{std::clamp(color.red, 0.0f, 1.0f), std::clamp(color.green, 0.0f, 1.0f),
                          std::clamp(color.blue, 0.0f, 1.0f)};
    }
    return sum * (1.0f / (kPoints * kPoints));
}

void Make(const Picture& picture, const std::string& folder) {
    std::vector<std::uint8_t> pixels;
    for (int row = 0; row < picture.height; ++row) {
        for (int column = 0; column < picture.width; ++column) {
            const Color color = PaintPixel(picture, column, row);
            const std::uint8_t bytes[] = {ToByte(color.red), ToByte(color.green), ToByte(color.blue)};
            pixels.insert(pixels.end(), bytes, bytes + picture.channels);
        }
    }
    vips::VImage::new_from_memory(pixels.data(), pixels.size(), picture.width, picture.height, picture.channels,
                                  VIPS_FORMAT_UCHAR)
        .copy(vips::VImage::option()->set("interpretation",
                                          picture.channels == 1 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB))
        .write_to_file((folder + "/" + picture.file).c_str());
}

}  // namespace

}  // namespace ombrix::pictures

int main(int argc, char** argv) {
    if (argc != 2 || VIPS_INIT(argv[0])) {
        std::fprintf(stderr, "Usage: make_pictures FOLDER\n");
        return 2;
    }
    try {
        for (const auto& picture : ombrix::pictures::kPictures) {
            ombrix::pictures::Make(picture, argv[1]);
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make_pictures: %s\n", error.what());
        return 1;
    }
}
