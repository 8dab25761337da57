// The procs of the blend modes, each over its whole domain against its formula in plain steps.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "blend/blend_procs.h"
#include "blend/colour_spaces.h"
#include "sdk/process_state.h"
#include "tests/support/fake_host.h"

namespace ombrix::testing {
namespace {

using Colour = std::array<int, 3>;

class BlendModes : public ::testing::Test {
  protected:
    void SetUp() override {
        host_.Start();
        FillBlendHandlers();
    }

    static Colour Blend(int mode, Colour source, Colour fill) {
        const std::uint8_t s[4] = {77, Byte(source[0]), Byte(source[1]), Byte(source[2])};
        const std::uint8_t f[4] = {88, Byte(fill[0]), Byte(fill[1]), Byte(fill[2])};
        std::uint8_t result[4];
        FindBlendProc(mode)(s, f, result);
        EXPECT_EQ(result[0], 77);
        return {result[1], result[2], result[3]};
    }

    static std::uint8_t Byte(int value) { return static_cast<std::uint8_t>(value); }

    FakeHost host_;
};

int Clamp(int value) { return value < 0 ? 0 : value > 255 ? 255 : value; }

/// The expected value of a channel.
int Expected(int mode, int s, int f) {
    switch (mode) {
        case 1:
            return (s * f) / 256;
        case 2:
            return 255 - ((255 - s) * (255 - f)) / 255;
        case 3:
            if (s < 128) return s * f / 127;
            return 255 - ((255 - s) * (255 - f)) / 127;
        case 4:
            return s < f ? s : f;
        case 5:
            return s > f ? s : f;
        case 6:
            if (f == 255) return 255;
            return s * 256 / (255 - f) > 255 ? 255 : s * 256 / (255 - f);
        case 7:
            if (f == 0) return 0;
            return (255 - s) * 256 / f > 255 ? 0 : 255 - (255 - s) * 256 / f;
        case 8:
            return Clamp(s * s / 256 + s * f / 128 - s * s * f / 32768);
        case 9:
            if (f < 128) return s * f / 127;
            return 255 - ((255 - s) * (255 - f)) / 127;
        case 10:
            return s > f ? s - f : f - s;
        case 11:
            return Clamp(s + f - 2 * s * f / 255);
        case 16:
            if (s < 2 * f - 255) return 2 * f - 255;
            return s < 2 * f ? s : 2 * f;
        case 17:
            return Clamp(s * s / 256 - s * s * f / 32768 + s * f * f / 32768);
        case 18: {
            if (s == 0) return 127;
            if (s <= 127) {
                const int q = (255 - f) * 256 / (2 * s);
                return q > 255 ? 0 : 255 - q;
            }
            const int d = s == 255 ? 1 : 255 - s;
            const int q = f * 256 / (2 * d);
            return q > 255 ? 255 : q;
        }
        case 19:
            if (s + 2 * f < 255) return 0;
            return s + 2 * f - 255 > 255 ? 255 : s + 2 * f - 255;
        case 20:
            return Clamp(s * s / 256 - s * s * f / 32768 + f * f / 256 + s * f * f / 32768);
        case 21:
            return s + f < 255 ? 0 : s + f - 255;
        case 22:
        case 23:
            return s + f > 255 ? 255 : s + f;
        default:
            ADD_FAILURE() << "mode " << mode << " has no plain form here";
            return -1;
    }
}

TEST_F(BlendModes, EveryPairOfChannelValuesFollowsItsFormula) {
    for (int mode = 1; mode <= static_cast<int>(kBlendProcCount); ++mode) {
        if (mode >= 12 && mode <= 15) continue;
        for (int s = 0; s < 256; ++s) {
            for (int f = 0; f < 256; ++f) {
                // Each channel has another pair, so that a channel mixed up with another shows.
                const Colour source{s, 255 - s, f};
                const Colour fill{f, s, 255 - s};
                const Colour expected{Expected(mode, s, f), Expected(mode, 255 - s, s), Expected(mode, f, 255 - s)};
                ASSERT_EQ(Blend(mode, source, fill), expected) << "mode " << mode << ", " << s << ", " << f;
            }
        }
    }
}

TEST_F(BlendModes, KnownValues) {
    const std::tuple<int, int, int, int> pairs[] = {
        // mode, source, fill, result
        {1, 255, 255, 254}, {2, 0, 0, 0},       {2, 255, 3, 255},    {3, 127, 255, 255}, {3, 128, 0, 0},
        {9, 255, 127, 255}, {6, 0, 255, 255},   {6, 0, 254, 0},      {6, 200, 100, 255}, {7, 255, 0, 0},
        {7, 255, 1, 255},   {8, 255, 255, 255}, {16, 0, 200, 145},   {16, 100, 40, 80},  {16, 200, 40, 80},
        {18, 0, 9, 127},    {18, 1, 255, 255},  {18, 127, 0, 0},     {18, 64, 128, 1},   {18, 255, 0, 0},
        {18, 255, 1, 128},  {18, 255, 2, 255},  {18, 200, 100, 232}, {19, 0, 127, 0},    {19, 0, 128, 1},
        {21, 100, 154, 0},  {21, 100, 155, 0},  {21, 100, 156, 1},
    };
    for (const auto& [mode, s, f, result] : pairs) {
        EXPECT_EQ(Blend(mode, {s, s, s}, {f, f, f})[0], result) << "mode " << mode << ", " << s << ", " << f;
    }
    EXPECT_EQ(Blend(12, {200, 100, 50}, {0, 0, 255}), (Colour{49, 49, 200}));
    EXPECT_EQ(Blend(13, {200, 100, 50}, {0, 0, 255}), (Colour{203, 101, 50}));
    EXPECT_EQ(Blend(14, {200, 100, 50}, {0, 0, 255}), (Colour{50, 50, 203}));
    EXPECT_EQ(Blend(15, {200, 100, 50}, {0, 0, 255}), (Colour{104, 4, 0}));
    EXPECT_EQ(Blend(15, {0, 0, 0}, {255, 255, 255}), (Colour{255, 255, 255}));
    EXPECT_EQ(Blend(15, {255, 255, 255}, {0, 0, 0}), (Colour{0, 0, 2}));
}

TEST_F(BlendModes, WhatIsNoModeIsMultiply) {
    for (const int mode : {1, static_cast<int>(kBlendProcCount) + 1, 1000, -5, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(FindBlendProc(mode), BlendMultiplyProc) << mode;
    }
    EXPECT_EQ(FindBlendProc(23), BlendAddProc);
    EXPECT_EQ(FindBlendProc(12), BlendHueProc);
}

TEST_F(BlendModes, FollowTheChannelPositions) {
    const std::uint8_t source[4] = {10, 20, 30, 40};
    const std::uint8_t fill[4] = {1, 2, 3, 4};
    NULL_PIX = 3, RED_PIX = 2, GREEN_PIX = 1, BLUE_PIX = 0;
    std::uint8_t result[4];
    BlendAddProc(source, fill, result);
    EXPECT_EQ((std::array{result[0], result[1], result[2], result[3]}), (std::array<std::uint8_t, 4>{11, 22, 33, 40}));
    NULL_PIX = 0, RED_PIX = 1, GREEN_PIX = 2, BLUE_PIX = 3;
}

// ---- The colour spaces in plain steps ----

Colour ToHls(Colour colour) {
    const auto [r, g, b] = colour;
    const int max = std::max({r, g, b});
    const int min = std::min({r, g, b});
    const double lightness = 0.5 * (max + min);
    if (max == min) return {0, static_cast<int>(lightness), 0};
    const double delta = max - min;
    const double saturation = 255.0 * delta / (lightness < 128.0 ? max + min : 511 - max - min);
    double hue;
    if (r == max) {
        hue = (g - b) / delta;
    } else if (g == max) {
        hue = 2.0 + (b - r) / delta;
    } else {
        hue = 4.0 + (r - g) / delta;
    }
    hue *= 42.5;
    if (hue < 0.0) {
        hue += 255.0;
    } else if (hue > 255.0) {
        hue -= 255.0;
    }
    return {static_cast<int>(hue), static_cast<int>(lightness), static_cast<int>(saturation)};
}

int ChannelOf(double m1, double m2, double hue) {
    if (hue > 255.0) {
        hue -= 255.0;
    } else if (hue < 0.0) {
        hue += 255.0;
    }
    double value = m1;
    if (hue < 42.5) {
        value = m1 + (m2 - m1) * hue / 42.5;
    } else if (hue < 127.5) {
        value = m2;
    } else if (hue < 170.0) {
        value = m1 + (m2 - m1) * (170.0 - hue) / 42.5;
    }
    return static_cast<int>(value * 255.0);
}

Colour FromHls(Colour hls) {
    const auto [h, l, s] = hls;
    if (s == 0) return {l, l, l};
    const double m2 = l <= 127 ? (s + 255.0) * l / 65025.0 : ((l + s) - s * l / 255.0) / 255.0;
    const double m1 = l / 127.5 - m2;
    return {ChannelOf(m1, m2, h + 85.0), ChannelOf(m1, m2, h), ChannelOf(m1, m2, h - 85.0)};
}

Colour LuminosityOf(Colour s, Colour f) {
    const int y = static_cast<int>((f[0] * 0.299 + f[1] * 0.587) + f[2] * 0.114);
    const int u = static_cast<int>((s[0] * -0.14 + s[1] * -0.289) + s[2] * 0.436);
    const int v = static_cast<int>((s[0] * 0.615 + s[1] * -0.515) + s[2] * -0.1);
    const auto cut = [](double value) { return value < 0.0 ? 0 : value > 255.0 ? 255 : static_cast<int>(value); };
    return {cut(y + 1.14 * v), cut((y - 0.395 * u) - 0.581 * v), cut(y + 2.032 * u)};
}

// Sanitizers are slow, and look for other faults than wrong colours.
#if defined(OMBRIX_SLOW_TESTS)
constexpr int kColourStep = 251;
#else
constexpr int kColourStep = 1;
#endif

/// Calls `check` with each of the 2^24 colours and stops at the first that fails.
template <class Check>
void ForEveryColour(Check check) {
    for (int i = 0; i < 1 << 24; i += kColourStep) {
        const Colour colour{i >> 16, i >> 8 & 255, i & 255};
        if (!check(colour)) {
            FAIL() << colour[0] << ", " << colour[1] << ", " << colour[2];
        }
    }
}

TEST(ColourSpaces, ConvertEveryColourThereAndBack) {
    ForEveryColour([](Colour colour) {
        Colour hls = colour;
        Convert_RGB_To_HSL(&hls[0], &hls[1], &hls[2]);
        Colour rgb = colour;
        Convert_HSL_To_RGB(&rgb[0], &rgb[1], &rgb[2]);
        return hls == ToHls(colour) && rgb == FromHls(colour);
    });
    const std::pair<Colour, Colour> known[] = {
        {{255, 0, 0}, {0, 127, 255}},     {{0, 255, 0}, {85, 127, 255}}, {{0, 0, 255}, {170, 127, 255}},
        {{200, 100, 50}, {14, 125, 153}}, {{90, 90, 90}, {0, 90, 0}},    {{255, 255, 255}, {0, 255, 0}},
    };
    for (auto [rgb, hls] : known) {
        Convert_RGB_To_HSL(&rgb[0], &rgb[1], &rgb[2]);
        EXPECT_EQ(rgb, hls);
    }
    EXPECT_EQ(FromHls({0, 127, 255}), (Colour{254, 0, 0}));
    EXPECT_EQ(FromHls({14, 125, 153}), (Colour{200, 99, 49}));
}

TEST_F(BlendModes, ColourModesFollowTheirFormulasForEveryColour) {
    const Colour others[] = {{200, 100, 50}, {3, 250, 128}};
    ForEveryColour([&](Colour colour) {
        // Every colour is a source once and a fill once.
        const Colour& other = others[colour[2] & 1];
        return Blend(15, colour, other) == LuminosityOf(colour, other) &&
               Blend(15, other, colour) == LuminosityOf(other, colour);
    });
    int n = 0;
    for (int i = 0; i < 1 << 24; i += 61 * kColourStep) {
        const Colour source{i >> 16, i >> 8 & 255, i & 255};
        const auto j = static_cast<int>((std::int64_t{i} * 7919 + n++) & 0xffffff);
        const Colour fill{j >> 16, j >> 8 & 255, j & 255};
        const Colour s = ToHls(source);
        const Colour f = ToHls(fill);
        ASSERT_EQ(Blend(12, source, fill), FromHls({f[0], s[1], s[2]})) << i << ", " << j;
        ASSERT_EQ(Blend(13, source, fill), FromHls({s[0], f[1], s[2]})) << i << ", " << j;
        ASSERT_EQ(Blend(14, source, fill), FromHls({f[0], f[1], s[2]})) << i << ", " << j;
    }
}

}  // namespace
}  // namespace ombrix::testing
