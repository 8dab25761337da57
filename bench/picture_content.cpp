#include "bench/picture_content.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace ombrix::bench {
namespace {

/// Xorshift, which is fast: pictures of 2 gigabytes are painted too.
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

using Colour = std::array<std::uint8_t, 3>;

/// Calls `colourAt(x, y)` for every pixel, row by row.
template <class ColourAt>
void PaintPixels(BenchPicture& picture, const ColourAt& colourAt) {
    const Size size = picture.Extent();
    const int bytes = picture.BytesPerPixel();
    for (int y = 0; y < size.height; ++y) {
        std::uint8_t* pixel = picture.Row(y) + (bytes == 4);  // a fourth byte, the alpha, lies first and stays 255
        for (int x = 0; x < size.width; ++x, pixel += bytes) {
            const Colour colour = colourAt(x, y);
            std::copy(colour.begin(), colour.end(), pixel);
        }
    }
}

void PaintPhoto(BenchPicture& picture, std::uint32_t seed) {
    Noise noise(seed);
    const Size size = picture.Extent();
    const int turn = static_cast<int>(seed % 7) * 36;
    PaintPixels(picture, [&](int x, int y) -> Colour {
        const int right = static_cast<int>(255ll * x / size.width);
        const int down = static_cast<int>(255ll * y / size.height);
        const std::uint32_t random = noise.Next();
        return {Noisy((right + turn) % 256, random), Noisy(down, random >> 8),
                Noisy(255 - (right + down + turn) / 2 % 256, random >> 16)};
    });
}

void PaintNoise(BenchPicture& picture, std::uint32_t seed) {
    Noise noise(seed);
    PaintPixels(picture, [&](int, int) -> Colour {
        const std::uint32_t random = noise.Next();
        return {static_cast<std::uint8_t>(random), static_cast<std::uint8_t>(random >> 8),
                static_cast<std::uint8_t>(random >> 16)};
    });
}

Colour Grey(std::uint32_t value) {
    const auto channel = static_cast<std::uint8_t>(value);
    return {channel, channel, channel};
}

void PaintGreys(BenchPicture& picture, std::uint32_t seed) {
    Noise noise(seed);
    PaintPixels(picture, [&](int, int) { return Grey(noise.Next() >> 8); });
}

/// Whether a pixel of a letter, at this place in its cell, is ink. `letter` says which strokes the letter has.
bool IsInk(int x, int y, std::uint32_t letter) {
    constexpr int kStroke = 2;
    constexpr int kWidth = 9;
    constexpr int kHeight = 15;
    if (x >= kWidth || y >= kHeight) return false;
    const bool strokes[] = {x < kStroke, x >= kWidth - kStroke, y < kStroke, y >= kHeight - kStroke,
                            y / kStroke == kHeight / kStroke / 2};
    for (const bool isOnStroke : strokes) {
        if (isOnStroke && letter & 1) return true;
        letter >>= 1;
    }
    return false;
}

void PaintWhitePaper(BenchPicture& picture, std::uint32_t seed) {
    constexpr int kCellWidth = 13;
    constexpr int kCellHeight = 30;
    constexpr Colour kPaper{255, 255, 255};
    constexpr Colour kInk{34, 30, 38};
    PaintPixels(picture, [=](int x, int y) {
        const auto cell = static_cast<std::uint32_t>(x / kCellWidth * 7919 + y / kCellHeight * 104729);
        const std::uint32_t letter = Noise(cell + seed).Next() >> 16;
        const bool isSpace = letter % 7 == 0;
        return !isSpace && IsInk(x % kCellWidth, y % kCellHeight, letter) ? kInk : kPaper;
    });
}

/// A colour, no grey, whose weighted sum is a whole number of lumas. Another `seed` gives another red.
Colour WholeLumaColour(std::uint32_t seed) {
    const auto red = static_cast<int>(60 * seed % 256);
    for (int green = 100; green < 256; ++green) {
        for (int blue = 0; blue < 256; ++blue) {
            const bool isGrey = red == green && green == blue;
            if (!isGrey && (299 * red + 587 * green + 114 * blue) % 1000 == 0) {
                return {static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                        static_cast<std::uint8_t>(blue)};
            }
        }
    }
    throw std::logic_error("no colour with a whole luma");
}

}  // namespace

const char* NameOf(Content content) {
    switch (content) {
        case Content::Photo:
            return "photo";
        case Content::Noise:
            return "noise";
        case Content::Greys:
            return "greys";
        case Content::WhitePaper:
            return "white paper";
        case Content::OneColour:
            return "one colour";
    }
    return "?";
}

void Paint(BenchPicture& picture, Content content, std::uint32_t seed) {
    switch (content) {
        case Content::Photo:
            return PaintPhoto(picture, seed);
        case Content::Noise:
            return PaintNoise(picture, seed);
        case Content::Greys:
            return PaintGreys(picture, seed);
        case Content::WhitePaper:
            return PaintWhitePaper(picture, seed);
        case Content::OneColour:
            return PaintPixels(picture, [colour = WholeLumaColour(seed)](int, int) { return colour; });
    }
}

void PaintMask(BenchPicture& mask) {
    constexpr int kSquare = 64;
    Noise noise(99);
    PaintPixels(mask, [&](int x, int y) {
        const bool isBlack = (x / kSquare + 2 * (y / kSquare)) % 5 == 0;
        return Grey(isBlack ? 0 : noise.Next() >> 8);
    });
}

}  // namespace ombrix::bench
