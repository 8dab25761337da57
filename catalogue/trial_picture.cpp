#include "catalogue/trial_picture.h"

namespace ombrix::catalogue {

host::Picture TrialPicture(host::Host& host, std::int64_t width, std::int64_t height, int depth, std::uint32_t seed) {
    const host::Picture picture = host.NewPicture(width, height, depth);
    const host::Picture::Lock pixels(picture);
    for (int y = 0; y < height; ++y) {
        for (std::uint8_t& byte : pixels.Row(y)) {
            seed = seed * 1664525 + 1013904223;  // a linear congruential generator, by Knuth
            const std::uint32_t kind = seed >> 16 & 7;
            byte = kind == 0 ? 0 : kind == 1 ? 255 : static_cast<std::uint8_t>(seed >> 24);
        }
    }
    return picture;
}

}  // namespace ombrix::catalogue
