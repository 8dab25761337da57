// Graphics.DrawPicture: depths, masks, clipping, scaling.
#include <array>
#include <limits>

#include "tests/host/support.h"

namespace ombrix::host {
namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

/// Alpha, red, green, blue; alpha is 255 where the depth has none.
using Colour = std::array<int, 4>;

class Drawing : public HostTest {
  protected:
    static void Put(const Picture& picture, int x, int y, Colour c) {
        const Picture::Lock lock(picture);
        std::uint8_t* pixel = lock.Row(y).data() + x * picture.Depth() / 8;
        const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
        if (picture.Depth() == 16) {
            const int word = (c[1] >> 3) << 10 | (c[2] >> 3) << 5 | c[3] >> 3;
            *pixel++ = byte(word & 255);
            *pixel = byte(word >> 8);
            return;
        }
        if (picture.Depth() == 32) *pixel++ = byte(c[0]);
        for (int i = 1; i < 4; ++i) *pixel++ = byte(c[i]);
    }

    static Colour Look(const Picture& picture, int x, int y) {
        const Picture::Lock lock(picture);
        const std::uint8_t* pixel = lock.Row(y).data() + x * picture.Depth() / 8;
        if (picture.Depth() == 16) {
            const int word = pixel[0] | pixel[1] << 8;
            const auto five = [&](int shift) { return (word >> shift & 31) * 33 / 4; };
            return {255, five(10), five(5), five(0)};
        }
        if (picture.Depth() == 24) return {255, pixel[0], pixel[1], pixel[2]};
        return {pixel[0], pixel[1], pixel[2], pixel[3]};
    }

    Picture Filled(int width, int height, int depth, Colour colour) {
        const Picture picture = host.NewPicture(width, height, depth);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) Put(picture, x, y, colour);
        }
        return picture;
    }

    /// Red is x + 1 and green y + 1.
    Picture Numbered(int width, int height, int depth) {
        const Picture picture = host.NewPicture(width, height, depth);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) Put(picture, x, y, {255, x + 1, y + 1, 0});
        }
        return picture;
    }

    static void Draw(const Picture& target, const Picture& source, std::int64_t x, std::int64_t y, std::int64_t w1 = -1,
                     std::int64_t h1 = -1, std::int64_t sx = 0, std::int64_t sy = 0, std::int64_t w2 = -1,
                     std::int64_t h2 = -1) {
        target.Get("Graphics").AsObject().Call("DrawPicture", {source, x, y, w1, h1, sx, sy, w2, h2});
    }
};

TEST_F(Drawing, ConvertsBetweenDepths) {
    // In five bits 25, 12, 4; from there in eight bits 206, 99, 33.
    const Colour colour = {7, 200, 100, 33}, opaque = {255, 200, 100, 33}, five = {255, 206, 99, 33};
    struct Case {
        int from, to;
        Colour expected;
    };
    const Case cases[] = {
        {32, 32, colour}, {32, 24, opaque}, {32, 16, five}, {24, 32, opaque}, {24, 24, opaque},
        {24, 16, five},   {16, 32, five},   {16, 24, five}, {16, 16, five},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::to_string(each.from) + " to " + std::to_string(each.to));
        const Picture target = host.NewPicture(3, 2, each.to);
        Draw(target, Filled(3, 2, each.from, colour), 0, 0, -10000, -10000, 0, 0, -10000, -10000);
        for (int i = 0; i < 6; ++i) EXPECT_EQ(Look(target, i % 3, i / 3), each.expected);
    }
}

TEST_F(Drawing, TakesSixteenBitPixelsLowByteFirst) {
    const Picture source = host.NewPicture(1, 1, 16), target = host.NewPicture(1, 1, 32);
    Picture::Lock(source).Row(0)[0] = 0x1f;  // blue
    Draw(target, source, 0, 0);
    EXPECT_EQ(Look(target, 0, 0), (Colour{255, 0, 0, 255}));
    Picture::Lock(source).Row(0)[0] = 0;
    Picture::Lock(source).Row(0)[1] = 0x7c;  // red
    Draw(target, source, 0, 0);
    EXPECT_EQ(Look(target, 0, 0), (Colour{255, 255, 0, 0}));
}

TEST_F(Drawing, MixesThroughAMask) {
    const Colour source = {255, 240, 80, 16}, under = {55, 40, 200, 96};
    struct Case {
        Colour mask, expected;
    };
    const Case cases[] = {
        {{0, 0, 0, 0}, {255, 240, 80, 16}},
        {{0, 255, 255, 255}, {55, 40, 200, 96}},
        // (240 * 204 + 40 * 51 + 127) / 255 = 200, (80 * 204 + 200 * 51 + 127) / 255 = 104, ...
        {{0, 51, 51, 51}, {215, 200, 104, 32}},
        // each channel by its own; alpha by the mean
        {{0, 0, 255, 51}, {175, 240, 200, 32}},
    };
    for (const int sourceDepth : {24, 32}) {
        for (const int targetDepth : {24, 32}) {
            for (const int maskDepth : {24, 32}) {
                for (const Case& each : cases) {
                    SCOPED_TRACE(::testing::Message() << sourceDepth << " onto " << targetDepth << " through "
                                                      << maskDepth << ", case " << (&each - cases));
                    const Picture from = Filled(2, 2, sourceDepth, source), to = Filled(2, 2, targetDepth, under);
                    from.SetMask(Filled(2, 2, maskDepth, each.mask));
                    Draw(to, from, 0, 0);
                    Colour expected = each.expected;
                    if (targetDepth == 24) expected[0] = 255;
                    for (int i = 0; i < 4; ++i) EXPECT_EQ(Look(to, i % 2, i / 2), expected);
                }
            }
        }
    }
    // 16-bit black and white are black and white too.
    for (const int shade : {0, 255}) {
        const Picture from = Filled(1, 1, 32, source), to = Filled(1, 1, 32, under);
        from.SetMask(Filled(1, 1, 16, {255, shade, shade, shade}));
        Draw(to, from, 0, 0);
        EXPECT_EQ(Look(to, 0, 0), shade == 0 ? source : under);
    }
}

TEST_F(Drawing, KeepsToBothPictures) {
    // Every placement of part of a 4 x 3 picture on one of 5 x 4, with and without a mask.
    for (const bool masked : {false, true}) {
        const Picture source = Numbered(4, 3, 24);
        if (masked) source.SetMask(host.NewPicture(4, 3, 24));
        for (int x = -5; x <= 6; ++x) {
            for (int y = -4; y <= 5; ++y) {
                for (int from = -2; from <= 5; ++from) {
                    const Picture target = Filled(5, 4, 24, {255, 99, 99, 99});
                    Draw(target, source, x, y, -1, -1, from, from - 1, 2, -1);
                    for (int i = 0; i < 20; ++i) {
                        const int column = i % 5 - x, row = i / 5 - y;
                        const int sourceX = column + from, sourceY = row + from - 1;
                        const bool covered = column >= 0 && column < 2 && row >= 0 && row < 3 && sourceX >= 0 &&
                                             sourceX < 4 && sourceY >= 0 && sourceY < 3;
                        const Colour expected =
                            covered ? Colour{255, sourceX + 1, sourceY + 1, 0} : Colour{255, 99, 99, 99};
                        ASSERT_EQ(Look(target, i % 5, i / 5), expected)
                            << "at " << x << ", " << y << " from " << from << ", pixel " << i;
                    }
                }
            }
        }
    }
}

TEST_F(Drawing, Scales) {
    const Picture source = Numbered(4, 4, 32);
    struct Case {
        std::int64_t x, width, sourceX, sourceWidth;
        std::array<int, 6> reds;  ///< of six pixels; 0 where nothing was drawn
    };
    const Case cases[] = {
        {0, 6, 0, 3, {1, 1, 2, 2, 3, 3}},
        {0, 2, 0, 4, {1, 3, 0, 0, 0, 0}},
        {0, 4, 1, 2, {2, 2, 3, 3, 0, 0}},
        {-1, 6, 0, 3, {1, 2, 2, 3, 3, 0}},
        {1, 5, 0, -1, {0, 1, 1, 2, 3, 4}},
        {0, -1, 1, 2, {2, 3, 0, 0, 0, 0}},
        {0, 0, 0, 4, {0, 0, 0, 0, 0, 0}},
        {0, 4, 0, 0, {0, 0, 0, 0, 0, 0}},
        {0, 6, -1, 3, {0, 0, 1, 1, 2, 2}},
        {0, 6, 3, 2, {4, 4, 4, 0, 0, 0}},
        {kLowest, kHighest, 0, 4, {0, 0, 0, 0, 0, 0}},
        {-3, kHighest, 0, 4, {1, 1, 1, 1, 1, 1}},
        {kHighest, 4, 0, 4, {0, 0, 0, 0, 0, 0}},
        {0, 2, kLowest, kHighest, {0, 0, 0, 0, 0, 0}},
        {kLowest, -1, kHighest, kLowest, {0, 0, 0, 0, 0, 0}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(&each - cases);
        const Picture across = host.NewPicture(6, 1, 32), down = host.NewPicture(1, 6, 32);
        Draw(across, source, each.x, 0, each.width, 1, each.sourceX, 0, each.sourceWidth, 1);
        Draw(down, source, 0, each.x, 1, each.width, 0, each.sourceX, 1, each.sourceWidth);
        for (int i = 0; i < 6; ++i) {
            EXPECT_EQ(Look(across, i, 0)[1], each.reds[i]) << i;
            EXPECT_EQ(Look(down, 0, i)[2], each.reds[i]) << i;
        }
    }
}

TEST_F(Drawing, OfAPictureOntoItselfSeesItAsItWas) {
    const Picture picture = Numbered(4, 1, 32);
    Draw(picture, picture, 1, 0);
    for (int x = 0; x < 4; ++x) EXPECT_EQ(Look(picture, x, 0)[1], x == 0 ? 1 : x);
    // And of a picture onto its own mask.
    const Picture photo = Filled(3, 1, 32, {255, 100, 100, 100}), mask = Numbered(3, 1, 32);
    photo.SetMask(mask);
    Draw(mask, photo, 1, 0);
    EXPECT_EQ(Look(mask, 1, 0)[1], (100 * 254 + 2 * 1 + 127) / 255);
    EXPECT_EQ(Look(mask, 2, 0)[1], (100 * 253 + 3 * 2 + 127) / 255);
}

TEST_F(Drawing, OfWhatHasNoPixelsDrawsNothing) {
    const Picture target = Filled(2, 2, 32, {9, 9, 9, 9});
    Draw(target, host.NewDrawing(2, 2), 0, 0);
    Draw(target, host.NewPicture(0, 5), 0, 0);
    Draw(host.NewPicture(0, 0), target, 0, 0);
    EXPECT_EQ(Look(target, 0, 0), (Colour{9, 9, 9, 9}));
    EXPECT_TRUE(host.NewDrawing(2, 2).Get("Graphics").IsNil());
}

}  // namespace
}  // namespace ombrix::host
