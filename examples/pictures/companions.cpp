#include "companions.h"

namespace ombrix::pictures {

namespace {

constexpr Color kBlack = Hex(0x000000);
constexpr Color kWhite = Hex(0xffffff);

/// Whether the point lies in the logo: a lozenge with round ends.
bool InLogo(float x, float y) {
    const float fromAxis = std::hypot(std::max(0.0f, std::abs(x - 1.25f) - 0.75f), y - 0.5f);
    return fromAxis < 0.46f;
}

}  // namespace

Color Vignette(float x, float y) {
    return Mix(kBlack, kWhite, Smooth(0.42f, 1.02f, Ellipse(x, y, 0.75f, 0.5f, 0.75f, 0.5f)));
}

Color Texture(float x, float y) {
    Color color = Mix(Hex(0x5a2a14), Hex(0xe0a04e), Fractal(2.2f * x + 4, 2.2f * y, 200, 4));
    color = Mix(color, Hex(0x2a1420), 0.75f * Smooth(0.35f, 0.95f, std::hypot(x - 0.55f, y - 0.40f)));
    // One light at most in each cell of each layer; the near layers have the larger ones.
    for (int layer = 0; layer < 3; ++layer) {
        const float spacing = 0.10f + 0.07f * static_cast<float>(layer);
        const auto column = static_cast<int>(std::floor(x / spacing));
        const auto row = static_cast<int>(std::floor(y / spacing));
        const auto seed = static_cast<std::uint32_t>(210 + 10 * layer);
        for (int cell = 0; cell < 9; ++cell) {
            const int i = column + cell % 3 - 1;
            const int j = row + cell / 3 - 1;
            const float centreX = (static_cast<float>(i) + Random(i, j, seed)) * spacing;
            const float centreY = (static_cast<float>(j) + Random(i, j, seed + 1)) * spacing;
            const float radius = spacing * (0.20f + 0.34f * Random(i, j, seed + 2));
            const float distance = Ellipse(x, y, centreX, centreY, radius, radius);
            const float disc = Smooth(1.0f, 0.90f, distance) * (0.55f + 0.45f * Smooth(0.6f, 0.95f, distance));
            const float strength = 0.55f * Smooth(0.35f, 0.9f, Random(i, j, seed + 3));
            const Color light = Mix(Hex(0xffc46b), Random(i, j, seed + 4) < 0.5f ? Hex(0xff7f5a) : Hex(0xfff0c9),
                                    Random(i, j, seed + 5));
            color = color + light * (strength * disc);
        }
    }
    const float fibres = Fractal(60 * x, 420 * y, 240, 3) - Fractal(420 * x, 60 * y, 250, 3);
    return color * (1 + 0.12f * fibres);
}

Color Logo(float x, float y) {
    Color color = Mix(Hex(0x0e4d92), Hex(0x1f8fd6), y);
    const float fromSun = std::hypot(x - 0.70f, y - 0.50f);
    color = fromSun < 0.22f ? Hex(0xffc928) : color;
    for (int wave = 0; wave < 3; ++wave) {
        const float crest =
            0.34f + 0.17f * static_cast<float>(wave) + 0.055f * std::sin(9.0f * x + static_cast<float>(wave));
        if (std::abs(y - crest) < 0.040f && x > 1.02f && x < 1.86f) {
            color = Hex(0xf4fbff);
        }
    }
    return color;
}

Color LogoMask(float x, float y) { return InLogo(x, y) ? kBlack : kWhite; }

}  // namespace ombrix::pictures
