// Effects on rows of every layout, against the same done a pixel at a time around the effect on ARGB.
#include <thread>

#include "tests/capi/support.h"

namespace ombrix::test {
namespace {

struct Format {
    ombrix_layout layout;
    ombrix_alpha alpha;

    bool HasAlpha() const { return BytesOf(layout) == 4 && alpha != OMBRIX_ALPHA_NONE; }
};

constexpr Format kFormats[] = {
    {OMBRIX_GREY, OMBRIX_ALPHA_NONE}, {OMBRIX_RGB, OMBRIX_ALPHA_NONE},      {OMBRIX_BGR, OMBRIX_ALPHA_NONE},
    {OMBRIX_RGBA, OMBRIX_ALPHA_NONE}, {OMBRIX_RGBA, OMBRIX_ALPHA_STRAIGHT}, {OMBRIX_RGBA, OMBRIX_ALPHA_PREMULTIPLIED},
    {OMBRIX_BGRA, OMBRIX_ALPHA_NONE}, {OMBRIX_BGRA, OMBRIX_ALPHA_STRAIGHT}, {OMBRIX_BGRA, OMBRIX_ALPHA_PREMULTIPLIED},
    {OMBRIX_ARGB, OMBRIX_ALPHA_NONE}, {OMBRIX_ARGB, OMBRIX_ALPHA_STRAIGHT}, {OMBRIX_ARGB, OMBRIX_ALPHA_PREMULTIPLIED},
    {OMBRIX_ABGR, OMBRIX_ALPHA_NONE}, {OMBRIX_ABGR, OMBRIX_ALPHA_STRAIGHT}, {OMBRIX_ABGR, OMBRIX_ALPHA_PREMULTIPLIED},
};

struct Colour {
    int alpha, red, green, blue;
    bool operator==(const Colour&) const = default;
};

/// Positions of alpha, red, green and blue in a pixel; -1 for none.
struct Positions {
    int alpha, red, green, blue;
};
Positions PositionsOf(ombrix_layout layout) {
    switch (layout) {
        case OMBRIX_GREY:
            return {-1, 0, 0, 0};
        case OMBRIX_RGB:
            return {-1, 0, 1, 2};
        case OMBRIX_BGR:
            return {-1, 2, 1, 0};
        case OMBRIX_RGBA:
            return {3, 0, 1, 2};
        case OMBRIX_BGRA:
            return {3, 2, 1, 0};
        case OMBRIX_ARGB:
            return {0, 1, 2, 3};
        case OMBRIX_ABGR:
            return {0, 3, 2, 1};
    }
    return {};
}

int Rounded(int numerator, int denominator) { return (2 * numerator + denominator) / (2 * denominator); }

/// With straight alpha.
Colour Read(const std::uint8_t* pixel, Format format) {
    const Positions at = PositionsOf(format.layout);
    Colour colour{format.HasAlpha() ? pixel[at.alpha] : 255, pixel[at.red], pixel[at.green], pixel[at.blue]};
    if (format.HasAlpha() && format.alpha == OMBRIX_ALPHA_PREMULTIPLIED) {
        for (int* channel : {&colour.red, &colour.green, &colour.blue}) {
            *channel = colour.alpha == 0 ? 0 : std::min(255, Rounded(255 * *channel, colour.alpha));
        }
    }
    return colour;
}

/// As it can be read from a format: its alpha, premultiplied or not, or grey.
Colour As(Format format, Colour colour) {
    if (!format.HasAlpha()) colour.alpha = 255;
    if (format.HasAlpha() && format.alpha == OMBRIX_ALPHA_PREMULTIPLIED) {
        for (int* channel : {&colour.red, &colour.green, &colour.blue})
            *channel = Rounded(*channel * colour.alpha, 255);
    }
    if (format.layout == OMBRIX_GREY) {
        colour.red = colour.green = colour.blue =
            Rounded(299 * colour.red + 587 * colour.green + 114 * colour.blue, 1000);
    }
    return colour;
}

/// As it lies there, alpha not undone.
Colour Raw(const std::uint8_t* pixel, Format format) {
    return Read(pixel, {format.layout, format.HasAlpha() ? OMBRIX_ALPHA_STRAIGHT : OMBRIX_ALPHA_NONE});
}

struct Shape {
    int width, height, gap;
    bool isSourceUp, isDestinationUp, atEnd;
};
constexpr Shape kShapes[] = {{1, 1, 0, false, false, true},  {2, 3, 5, false, false, false},
                             {7, 4, 0, true, true, true},    {37, 3, 3, false, true, true},
                             {19, 2, 0, true, false, false}, {1, 5, 1, false, false, true}};

struct Case {
    const char* name;
    std::vector<std::pair<const char*, const char*>> values;
};

std::vector<Case> Cases() {
    return {{"sepia", {{"value", "30"}}},
            {"InvertEffect", {}},
            {"colorfilter", {{"red", "20"}, {"green", "-30"}, {"blue", "90"}}},
            {"mirror", {}},
            {"fade", {}},
            {"twice", {}}};
}

/// What the result should look like, by the effect on ARGB.
std::vector<Colour> Expected(const Effect& effect, const GuardedRows& source, Format format) {
    const ombrix_rows& rows = source.rows;
    const auto width = static_cast<int>(rows.width), height = static_cast<int>(rows.height);
    const GuardedRows argb(width, height, OMBRIX_ARGB, OMBRIX_ALPHA_STRAIGHT, 0, false, true);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Colour colour = Read(source.Pixel(x, y), format);
            const std::uint8_t bytes[] = {
                static_cast<std::uint8_t>(colour.alpha), static_cast<std::uint8_t>(colour.red),
                static_cast<std::uint8_t>(colour.green), static_cast<std::uint8_t>(colour.blue)};
            std::memcpy(argb.Pixel(x, y), bytes, 4);
        }
    }
    const GuardedRows result(width, height, OMBRIX_ARGB, OMBRIX_ALPHA_STRAIGHT, 0, false, true);
    EXPECT_EQ(ombrix_apply(effect.handle, &argb.rows, &result.rows), OMBRIX_OK) << ombrix_last_error();
    std::vector<Colour> colours;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            colours.push_back(Read(result.Pixel(x, y), {OMBRIX_ARGB, OMBRIX_ALPHA_STRAIGHT}));
        }
    }
    return colours;
}

testing::AssertionResult Shows(const GuardedRows& result, Format format, const std::vector<Colour>& expected) {
    for (int y = 0, i = 0; y < result.rows.height; ++y) {
        for (int x = 0; x < result.rows.width; ++x, ++i) {
            const Colour wanted = As(format, expected[i]), found = Raw(result.Pixel(x, y), format);
            if (wanted == found) continue;
            return testing::AssertionFailure()
                   << "at " << x << ", " << y << " (alpha, red, green, blue): " << found.alpha << ' ' << found.red
                   << ' ' << found.green << ' ' << found.blue << ", not " << wanted.alpha << ' ' << wanted.red << ' '
                   << wanted.green << ' ' << wanted.blue;
        }
    }
    return testing::AssertionSuccess();
}

TEST(Layouts, GiveTheSameFromAnyIntoAny) {
    LoadRowEffects();
    for (const Case& each : Cases()) {
        const Effect effect(each.name, each.values);
        for (const Shape& shape : kShapes) {
            for (const Format from : kFormats) {
                const GuardedRows source(shape.width, shape.height, from.layout, from.alpha, shape.gap,
                                         shape.isSourceUp, shape.atEnd);
                source.Fill(1);
                const std::vector<std::uint8_t> before = source.Bytes();
                const std::vector<Colour> expected = Expected(effect, source, from);
                for (const Format to : kFormats) {
                    const GuardedRows result(shape.width, shape.height, to.layout, to.alpha, shape.gap,
                                             shape.isDestinationUp, shape.atEnd);
                    int copies = -1;
                    ASSERT_EQ(ombrix_copies(effect.handle, &source.rows, &result.rows, &copies), OMBRIX_OK);
                    ASSERT_EQ(ombrix_apply(effect.handle, &source.rows, &result.rows), OMBRIX_OK)
                        << ombrix_last_error();
                    ASSERT_TRUE(Shows(result, to, expected))
                        << each.name << " of layout " << from.layout << '/' << from.alpha << " into " << to.layout
                        << '/' << to.alpha << ", " << shape.width << 'x' << shape.height << ", " << copies << " copies";
                    ASSERT_TRUE(result.KeepsGaps());
                    ASSERT_EQ(source.Bytes(), before);
                }
            }
        }
    }
}

TEST(Layouts, GiveTheSameInPlaceAndInNewRows) {
    LoadRowEffects();
    for (const Case& each : Cases()) {
        const Effect effect(each.name, each.values);
        for (const Shape& shape : kShapes) {
            for (const Format format : kFormats) {
                const GuardedRows rows(shape.width, shape.height, format.layout, format.alpha, shape.gap,
                                       shape.isSourceUp, shape.atEnd);
                rows.Fill(2);
                const std::vector<Colour> expected = Expected(effect, rows, format);
                ombrix_rows made{};
                made.size = sizeof made;
                ASSERT_EQ(ombrix_apply_new(effect.handle, &rows.rows, &made), OMBRIX_OK) << ombrix_last_error();
                EXPECT_EQ(made.layout, format.layout);
                EXPECT_EQ(made.row_bytes, shape.width * BytesOf(format.layout));

                ASSERT_EQ(ombrix_apply(effect.handle, &rows.rows, &rows.rows), OMBRIX_OK) << ombrix_last_error();
                EXPECT_TRUE(rows.KeepsGaps());
                EXPECT_TRUE(Shows(rows, format, expected))
                    << each.name << " in place, layout " << format.layout << '/' << format.alpha << ", " << shape.width
                    << 'x' << shape.height;
                for (int y = 0; y < shape.height && BytesOf(format.layout) < 4; ++y) {
                    const auto* row = static_cast<const std::uint8_t*>(made.base) + y * made.row_bytes;
                    EXPECT_EQ(std::memcmp(row, rows.Pixel(0, y), static_cast<std::size_t>(made.row_bytes)), 0);
                }
                ombrix_free(made.base);
            }
        }
    }
}

/// Many strips, and every column in its place.
TEST(Layouts, GiveTheSameForPicturesLargerThanACache) {
    constexpr int kWidth = 701, kHeight = 499;
    const Effect effect("sepia", {{"value", "30"}});
    for (const Format from : {kFormats[0], kFormats[2], kFormats[4], kFormats[5], kFormats[13]}) {
        const GuardedRows source(kWidth, kHeight, from.layout, from.alpha, 9, false, true);
        source.Fill(3);
        const std::vector<Colour> expected = Expected(effect, source, from);
        for (const Format to : {from, kFormats[8]}) {
            const GuardedRows result(kWidth, kHeight, to.layout, to.alpha, 9, false, true);
            ASSERT_EQ(ombrix_apply(effect.handle, &source.rows, &result.rows), OMBRIX_OK) << ombrix_last_error();
            EXPECT_TRUE(Shows(result, to, expected)) << from.layout << " into " << to.layout;
            if (to.layout != from.layout) continue;
            ombrix_rows made{};
            made.size = sizeof made;
            ASSERT_EQ(ombrix_apply_new(effect.handle, &source.rows, &made), OMBRIX_OK) << ombrix_last_error();
            for (int y = 0; y < kHeight; ++y) {
                const auto* row = static_cast<const std::uint8_t*>(made.base) + y * made.row_bytes;
                ASSERT_EQ(std::memcmp(row, result.Pixel(0, y), static_cast<std::size_t>(made.row_bytes)), 0);
            }
            std::thread([&] { ombrix_free(made.base); }).join();
        }
    }
}

struct Passes {
    const char* effect;
    Format from, to;
    bool inPlace;
    int copies;
};

TEST(Layouts, AreLeftAsTheyLieWhereverTheEffectAllowsIt) {
    LoadRowEffects();
    constexpr Format kArgb{OMBRIX_ARGB, OMBRIX_ALPHA_STRAIGHT}, kRgba{OMBRIX_RGBA, OMBRIX_ALPHA_STRAIGHT},
        kRgbx{OMBRIX_RGBA, OMBRIX_ALPHA_NONE}, kRgb{OMBRIX_RGB, OMBRIX_ALPHA_NONE}, kBgr{OMBRIX_BGR, OMBRIX_ALPHA_NONE},
        kBgra{OMBRIX_BGRA, OMBRIX_ALPHA_STRAIGHT}, kSoft{OMBRIX_ARGB, OMBRIX_ALPHA_PREMULTIPLIED},
        kGrey{OMBRIX_GREY, OMBRIX_ALPHA_NONE};
    const Passes cases[] = {
        {"sepia", kArgb, kArgb, false, 0},  {"sepia", kArgb, kArgb, true, 0},  {"sepia", kRgb, kRgb, false, 0},
        {"sepia", kRgba, kRgba, false, 0},  {"sepia", kRgba, kRgba, true, 0},  {"sepia", kRgbx, kRgbx, true, 0},
        {"sepia", kRgbx, kRgba, false, 1},  {"sepia", kBgr, kBgr, true, 2},    {"invert", kBgr, kBgr, true, 0},
        {"invert", kBgra, kBgra, false, 0}, {"sepia", kRgb, kRgba, false, 1},  {"sepia", kBgr, kRgb, false, 1},
        {"sepia", kGrey, kRgb, false, 1},   {"sepia", kSoft, kSoft, true, 2},  {"sepia", kSoft, kArgb, false, 1},
        {"mirror", kArgb, kArgb, false, 0}, {"mirror", kArgb, kArgb, true, 1}, {"mirror", kRgba, kRgba, false, 2},
        {"fade", kRgba, kRgba, false, 2},   {"twice", kArgb, kArgb, false, 1},
    };
    for (const Passes& each : cases) {
        const Effect effect(each.effect);
        if (std::string(each.effect) == "sepia") ombrix_set_integer(effect.handle, "value", 30);
        const GuardedRows source(9, 4, each.from.layout, each.from.alpha, 0, false, true);
        const GuardedRows other(9, 4, each.to.layout, each.to.alpha, 0, false, true);
        int copies = -1;
        EXPECT_EQ(ombrix_copies(effect.handle, &source.rows, each.inPlace ? &source.rows : &other.rows, &copies),
                  OMBRIX_OK);
        EXPECT_EQ(copies, each.copies) << each.effect << " of " << each.from.layout << " into " << each.to.layout
                                       << (each.inPlace ? " in place" : "");
    }
}

}  // namespace
}  // namespace ombrix::test
