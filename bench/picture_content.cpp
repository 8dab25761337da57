#include "bench/picture_content.h"

#include <algorithm>

namespace ombrix::bench {
namespace {

/// Xorshift: noise that costs nothing next to writing it, since pictures of 2 gigabytes are painted too.
class Noise {
  public:
    explicit Noise(std::uint32_t seed) : state_(seed * 2654435761u | 1u) {}

    std::uint32_t Next() {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 17;
        state_ ^= state_ << 5;
        return state_;
    }

  private:
    std::uint32_t state_;
};

std::uint8_t Noisy(int value, std::uint32_t noise) {
    return static_cast<std::uint8_t>(std::clamp(value + static_cast<int>(noise & 63) - 32, 0, 255));
}

}  // namespace

void PaintPhoto(BenchPicture& picture, std::uint32_t seed) {
    Noise noise(seed);
    const Size size = picture.Extent();
    const int bytes = picture.BytesPerPixel();
    const int turn = static_cast<int>(seed % 7) * 36;
    for (int y = 0; y < size.height; ++y) {
        const int down = static_cast<int>(255ll * y / size.height);
        std::uint8_t* pixel = picture.Row(y) + (bytes == 4);  // a fourth byte, the alpha, lies first and stays 255
        for (int x = 0; x < size.width; ++x, pixel += bytes) {
            const int right = static_cast<int>(255ll * x / size.width);
            const std::uint32_t random = noise.Next();
            pixel[0] = Noisy((right + turn) % 256, random);
            pixel[1] = Noisy(down, random >> 8);
            pixel[2] = Noisy(255 - (right + down + turn) / 2 % 256, random >> 16);
        }
    }
}

void PaintMask(BenchPicture& mask) {
    constexpr int kSquare = 64;
    Noise noise(99);
    const Size size = mask.Extent();
    const int bytes = mask.BytesPerPixel();
    for (int y = 0; y < size.height; ++y) {
        std::uint8_t* pixel = mask.Row(y) + (bytes == 4);
        for (int x = 0; x < size.width; ++x, pixel += bytes) {
            const bool isBlack = (x / kSquare + 2 * (y / kSquare)) % 5 == 0;
            const auto grey = static_cast<std::uint8_t>(isBlack ? 0 : noise.Next() >> 8);
            std::fill_n(pixel, 3, grey);
        }
    }
}

}  // namespace ombrix::bench
