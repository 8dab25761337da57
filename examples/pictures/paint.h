// Colours and noise: what the example pictures are painted with. All of it is a function of a point and nothing else,
// so that a picture comes out the same each time.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace ombrix::pictures {

/// Red, green and blue as displayed, each from 0 to 1.
struct Color {
    float red = 0;
    float green = 0;
    float blue = 0;
};

inline Color operator*(Color color, float factor) {
    return {color.red * factor, color.green * factor, color.blue * factor};
}

inline Color operator+(Color a, Color b) { return {a.red + b.red, a.green + b.green, a.blue + b.blue}; }

/// `from` at 0, `to` at 1.
inline Color Mix(Color from, Color to, float amount) { return from * (1 - amount) + to * amount; }

/// A colour written as in web pages, 0xRRGGBB.
constexpr Color Hex(std::uint32_t rgb) {
    return {static_cast<float>(rgb >> 16 & 255) / 255.0f, static_cast<float>(rgb >> 8 & 255) / 255.0f,
            static_cast<float>(rgb & 255) / 255.0f};
}

/// 0 below `low`, 1 above `high`, a soft passage between them; the other way round when `low` is above `high`.
inline float Smooth(float low, float high, float value) {
    const float t = std::clamp((value - low) / (high - low), 0.0f, 1.0f);
    return t * t * (3 - 2 * t);
}

/// A random number from 0 to 1 that belongs to a cell of a grid.
inline float Random(int x, int y, std::uint32_t seed) {
    std::uint32_t h = static_cast<std::uint32_t>(x) * 0x85ebca6bu ^ static_cast<std::uint32_t>(y) * 0xc2b2ae35u ^
                      (seed + 1) * 0x9e3779b1u;
    h = (h ^ h >> 15) * 0x2c1b3c6du;
    h = (h ^ h >> 12) * 0x297a2d39u;
    return static_cast<float>((h ^ h >> 15) >> 8) / 16777216.0f;
}

/// Value noise: a soft random field from 0 to 1 whose features are as wide as the unit.
inline float Noise(float x, float y, std::uint32_t seed) {
    const float left = std::floor(x);
    const float top = std::floor(y);
    const int column = static_cast<int>(left);
    const int row = static_cast<int>(top);
    const float across = Smooth(0, 1, x - left);
    const float down = Smooth(0, 1, y - top);
    const auto between = [](float a, float b, float t) { return a + (b - a) * t; };
    return between(between(Random(column, row, seed), Random(column + 1, row, seed), across),
                   between(Random(column, row + 1, seed), Random(column + 1, row + 1, seed), across), down);
}

/// Noise with ever finer detail added to it, from 0 to 1.
inline float Fractal(float x, float y, std::uint32_t seed, int octaves) {
    float sum = 0;
    float weight = 0.5f;
    float total = 0;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += weight * Noise(x, y, seed + static_cast<std::uint32_t>(octave));
        total += weight;
        weight /= 2;
        x = 2.03f * x + 17.1f;
        y = 2.03f * y + 9.7f;
    }
    return sum / total;
}

/// Less than 1 inside the ellipse, 1 on its edge.
inline float Ellipse(float x, float y, float centreX, float centreY, float radiusX, float radiusY) {
    return std::hypot((x - centreX) / radiusX, (y - centreY) / radiusY);
}

}  // namespace ombrix::pictures
