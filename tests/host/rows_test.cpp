// Rows of all layouts, on their own and as the place of a result.
#include "ombrix/rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "host/row_formats.h"
#include "ombrix/host.h"

namespace ombrix::host {
namespace {

constexpr Layout kLayouts[] = {Layout::Grey, Layout::Rgb,  Layout::Bgr, Layout::Rgba,
                               Layout::Bgra, Layout::Argb, Layout::Abgr};

std::vector<std::uint8_t> Noise(std::size_t bytes) {
    std::vector<std::uint8_t> noise(bytes);
    std::uint32_t seed = 1;
    for (std::uint8_t& byte : noise) byte = static_cast<std::uint8_t>((seed = seed * 1664525 + 1013904223) >> 24);
    return noise;
}

/// Every length, so that each function's vectors end everywhere.
TEST(RowFormats, AreTheSameOnEveryProcessor) {
    const RowFormats &plain = PlainRowFormats(), &here = RowFormatsHere();
    const std::vector<std::uint8_t> noise = Noise(280);
    for (std::size_t length = 0; length <= 70; ++length) {
        for (const Layout layout : kLayouts) {
            // A byte more, which stays as it is.
            std::vector<std::uint8_t> expected(4 * length + 1), actual(4 * length + 1);
            plain.decode(noise.data(), layout, length, expected.data());
            here.decode(noise.data(), layout, length, actual.data());
            EXPECT_EQ(actual, expected);
            expected.resize(length * BytesPerPixel(layout) + 1);
            actual.resize(expected.size());
            plain.encode(noise.data(), length, layout, expected.data());
            here.encode(noise.data(), length, layout, actual.data());
            EXPECT_EQ(actual, expected);
        }
        for (const AlphaStep step :
             {AlphaStep::Keep, AlphaStep::Opaque, AlphaStep::Unpremultiply, AlphaStep::Premultiply}) {
            std::vector<std::uint8_t> expected = noise, actual = noise;
            plain.change(expected.data(), length, step);
            here.change(actual.data(), length, step);
            EXPECT_EQ(actual, expected);
        }
    }
}

TEST(RowFormats, RoundAllProductsAndQuotientsToTheNearest) {
    for (const RowFormats* formats : {&PlainRowFormats(), &RowFormatsHere()}) {
        for (int alpha = 0; alpha < 256; ++alpha) {
            std::vector<std::uint8_t> multiplied(1024);
            for (std::size_t c = 0; c < 256; ++c) {
                multiplied[4 * c] = static_cast<std::uint8_t>(alpha);
                for (int channel = 1; channel < 4; ++channel)
                    multiplied[4 * c + channel] = static_cast<std::uint8_t>(c);
            }
            std::vector<std::uint8_t> divided = multiplied;
            formats->change(multiplied.data(), 256, AlphaStep::Premultiply);
            formats->change(divided.data(), 256, AlphaStep::Unpremultiply);
            for (std::size_t c = 0; c < 256; ++c) {
                const int colour = static_cast<int>(c);
                const int product = (2 * colour * alpha + 255) / 510;
                const int quotient = alpha == 0 ? 0 : std::min(255, (2 * 255 * colour + alpha) / (2 * alpha));
                for (int channel = 1; channel < 4; ++channel) {
                    ASSERT_EQ(multiplied[4 * c + channel], product) << c << " * " << alpha;
                    ASSERT_EQ(divided[4 * c + channel], quotient) << c << " / " << alpha;
                }
                ASSERT_EQ(multiplied[4 * c], alpha);
                ASSERT_EQ(divided[4 * c], alpha);
            }
        }
    }
}

TEST(RowFormats, RoundTheLumaOfAllColours) {
    std::vector<std::uint8_t> colours(1024), luma(256);
#ifdef OMBRIX_SLOW_TESTS
    constexpr int kStep = 5;
#else
    constexpr int kStep = 1;
#endif
    for (int red = 0; red < 256; red += kStep) {
        for (int green = 0; green < 256; green += kStep) {
            for (std::size_t blue = 0; blue < 256; ++blue) {
                std::uint8_t* pixel = &colours[4 * blue];
                pixel[1] = static_cast<std::uint8_t>(red);
                pixel[2] = static_cast<std::uint8_t>(green);
                pixel[3] = static_cast<std::uint8_t>(blue);
            }
            RowFormatsHere().encode(colours.data(), 256, Layout::Grey, luma.data());
            for (int blue = 0; blue < 256; ++blue) {
                ASSERT_EQ(luma[blue], (299 * red + 587 * green + 114 * blue + 500) / 1000);
            }
        }
    }
}

TEST(ResultPlace, TakesTheFirstPictureOfItsSizeForItsScope) {
    Host host;
    host.Load(OMBRIX_BUILD_DIR "/libombrix.so");
    const Object invert = host.New("InvertEffect");
    const Picture source = host.NewPicture(5, 3, 24);
    std::vector<std::uint8_t> memory(51, 9);
    Picture held;
    {
        const Host::ResultPlace place(host, {memory.data(), 17, 5, 3, 24});
        EXPECT_THROW(Host::ResultPlace(host, {memory.data(), 17, 5, 3, 24}), Error);
        const auto apply = [&](const Picture& picture) { return Picture(invert.Call("Apply", {picture}).AsObject()); };
        EXPECT_FALSE(place.Holds(apply(host.NewPicture(5, 3, 32)))) << "another depth";
        EXPECT_FALSE(place.Holds(host.NewPicture(5, 3, 24))) << "the program's own";
        held = apply(source);
        EXPECT_TRUE(place.Holds(held));
        EXPECT_FALSE(place.Holds(apply(source))) << "the second";
        EXPECT_EQ(Picture::Lock(held).Base(), memory.data());
    }
    EXPECT_EQ(held.Depth(), 0) << "its memory may be gone";
    for (std::size_t i = 0; i < memory.size(); ++i) EXPECT_EQ(memory[i], i % 17 < 15 ? 255 : 9);
}

}  // namespace
}  // namespace ombrix::host
