// The effects as objects of a program: their defaults, ranges, interfaces, masks and references.
#include <gmock/gmock.h>

#include <limits>

#include "tests/effects/effects_test.h"

namespace ombrix::testing {
namespace {

using Objects = Effects;
using ::testing::ElementsAre;

constexpr std::int64_t kIllegal = 4;
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

struct Range {
    const char* className;
    const char* property;
    std::int64_t first;
    std::int64_t last;
    std::int64_t initial;
    bool initialWorks;
};

const Range kRanges[] = {
    {"ColorFilterEffect", "Red", -255, 255, 0, true},
    {"ColorFilterEffect", "Green", -255, 255, 0, true},
    {"ColorFilterEffect", "Blue", -255, 255, 0, true},
    {"BrightnessEffect", "BrightnessValue", -255, 255, 0, true},
    {"ContrastEffect", "ContrastValue", -100, 100, 0, true},
    {"SepiaEffect", "SepiaValue", 10, 55, 0, false},
    {"GrayscaleEffect", "GrayscaleType", kLeast, kMost, 2, true},
};

TEST_F(Objects, PropertiesTakeAnyValueAndCallsRefuseWhatIsOutOfRange) {
    for (const Range& range : kRanges) {
        SCOPED_TRACE(::testing::Message() << range.className << "." << range.property);
        const Object effect = host_.New(range.className);
        EXPECT_EQ(effect.Get(range.property).AsInteger(), range.initial);
        Picture picture = Single({10, 20, 30});
        const auto works = [&](std::int64_t value) {
            effect.Set(range.property, value);
            EXPECT_EQ(effect.Get(range.property).AsInteger(), value);
            const bool made = !effect.CallInterface("IGraphicsEffect", "Apply", {picture}).IsNil();
            EXPECT_EQ(ErrorOf(effect), made ? 0 : kIllegal) << value;
            effect.CallInterface("IGraphicsEffectInPlace", "ApplyInPlace", {Single({1, 2, 3})});
            EXPECT_EQ(ErrorOf(effect), made ? 0 : kIllegal) << value;
            return made;
        };
        EXPECT_EQ(works(range.initial), range.initialWorks);
        EXPECT_TRUE(works(range.first));
        EXPECT_TRUE(works(range.last));
        if (range.first == kLeast) continue;
        for (const std::int64_t value : {range.first - 1, range.last + 1, kLeast, kMost, std::int64_t{1} << 32,
                                         (std::int64_t{1} << 32) + range.last}) {
            EXPECT_FALSE(works(value)) << value;
        }
        EXPECT_EQ(At(picture), (Colour{10, 20, 30}));
    }
}

TEST_F(Objects, InterfaceMethodsTakeTheirArgumentsFromTheProperties) {
    const Picture mask = Painted(64, 20, [](int x, int y) { return Colour{x * 4, 0, y * 9}; });
    const Picture source = Painted(64, 20, [](int x, int y) { return Colour{x * 3, y * 11, x + y}; });
    for (const auto& [className, property, value] : {std::tuple{"ColorFilterEffect", "Green", 90},
                                                     {"BrightnessEffect", "BrightnessValue", -33},
                                                     {"ContrastEffect", "ContrastValue", 50},
                                                     {"SepiaEffect", "SepiaValue", 40},
                                                     {"GrayscaleEffect", "GrayscaleType", 1}}) {
        const Object effect = host_.New(className);
        effect.Set(property, value);
        effect.Set("Mask", mask);
        const bool isFilter = std::string(className) == "ColorFilterEffect";
        const Picture byProperty(effect.Call("Apply", {source}).AsObject());
        const Picture byArgument(isFilter ? effect.Call("Apply", {source, 0, value, 0, mask}).AsObject()
                                          : effect.Call("Apply", {source, value, mask}).AsObject());
        const Picture inPlace = Painted(64, 20, [](int x, int y) { return Colour{x * 3, y * 11, x + y}; });
        effect.Call("ApplyInPlace", {inPlace});
        for (int y = 0; y < 20; ++y) {
            for (int x = 0; x < 64; ++x) {
                ASSERT_EQ(At(byProperty, x, y), At(byArgument, x, y)) << className;
                ASSERT_EQ(At(byProperty, x, y), At(inPlace, x, y)) << className;
            }
        }
    }
}

TEST_F(Objects, MasksGoFromSourceToResult) {
    for (const char* className : {"ColorFilterEffect", "InvertEffect", "GrayscaleEffect", "BlendEffect"}) {
        const Object effect = host_.New(className);
        Picture source = Single({1, 2, 3});
        const bool blends = std::string(className) == "BlendEffect";
        if (blends) effect.Set("FillPicture", Single({9, 9, 9}));
        EXPECT_FALSE(Picture(effect.Call("Apply", {source}).AsObject()).Mask());
        const Picture mask = Single({4, 5, 6});
        source.SetMask(mask);
        EXPECT_EQ(Picture(effect.Call("Apply", {source}).AsObject()).Mask() == mask, !blends) << className;
        if (blends) continue;
        effect.Set("IgnoreAlpha", true);
        EXPECT_FALSE(Picture(effect.Call("Apply", {source}).AsObject()).Mask());
        effect.Call("ApplyInPlace", {source});
        EXPECT_EQ(source.Mask(), mask);
    }
}

TEST_F(Objects, ReferencesBalance) {
    const std::int64_t before = host_.LiveObjects();
    {
        const Object effect = host_.New("SepiaEffect");
        effect.Set("SepiaValue", 20);
        const Object handler = host_.NewProgressHandler([](std::int64_t, std::int64_t) {});
        for (int i = 0; i < 3; ++i) effect.Set("ProgressHandler", handler);
        EXPECT_EQ(effect.Get("ProgressHandler").AsObject(), handler);
        Picture source = Painted(40, 40, [](int x, int y) { return Colour{x, y, 0}; });
        source.SetMask(Painted(40, 40, [](int, int) { return Colour{1, 1, 1}; }));
        effect.Set("Mask", source);
        for (int i = 0; i < 3; ++i) effect.Call("Apply", {source});
        effect.Set("Mask", nullptr);
        const Object blend = host_.New("BlendEffect");
        blend.Set("FillPicture", source);
        blend.Set("FillMask", source);
        blend.Set("Location", host_.NewPoint(3, 4));
        blend.Set("Size", host_.NewPoint(30, 30));
        blend.Call("Apply", {source});
        EXPECT_EQ(blend.Get("Opacity").AsDouble(), 1.0);
        EXPECT_EQ(blend.Get("BlendMode").AsInteger(), 0);
    }
    EXPECT_EQ(host_.LiveObjects(), before);
    EXPECT_EQ(host_.OutstandingLocks(), 0);
}

TEST_F(Objects, AProgressReportMayChangeTheEffect) {
    const Object effect = host_.New("InvertEffect");
    std::vector<std::int64_t> done;
    effect.Set("ProgressHandler", host_.NewProgressHandler([&](std::int64_t value, std::int64_t) {
        // Whatever the effect held when it was called stays alive until it is done.
        effect.Set("ProgressHandler", nullptr);
        effect.Set("Mask", nullptr);
        done.push_back(value);
    }));
    effect.Set("Mask", Painted(20, 250, [](int, int) { return Colour{0, 0, 0}; }));
    effect.Set("MultiprocessingHint", 1);
    const Picture source = Painted(20, 250, [](int x, int y) { return Colour{x, y, 0}; });
    const Picture result(effect.Call("Apply", {source}).AsObject());
    EXPECT_THAT(done, ElementsAre(100, 200, 250, 250));
    EXPECT_EQ(At(result, 7, 249), (Colour{248, 6, 255}));
}

TEST_F(Objects, UtilitiesConvertDepths) {
    const Picture source = Painted(30, 20, [](int x, int y) { return Colour{x * 8, y * 8, 255}; });
    source.SetMask(Painted(30, 20, [](int, int) { return Colour{0, 0, 0}; }));
    for (const int depth : {16, 24, 32}) {
        const Picture converted(host_.CallModule("OmbrixUtilities", "EnsurePictureBits", {source, depth}).AsObject());
        EXPECT_EQ(converted.Depth(), depth);
        EXPECT_EQ(converted == source, depth == 32);
        EXPECT_EQ(converted.Mask(), source.Mask());
        const Picture compatible(
            host_.CallModule("OmbrixUtilities", "EnsurePictureCompatible", {converted}).AsObject());
        EXPECT_EQ(compatible.Depth(), depth == 24 ? 24 : 32);
        EXPECT_EQ(compatible == converted, depth != 16);
        // Five bits a channel keep 248 and 255 to within their step.
        const Colour colour = At(compatible, 29, 10);
        EXPECT_NEAR(colour[0], 232, depth == 16 ? 7 : 0);
        EXPECT_NEAR(colour[1], 80, depth == 16 ? 7 : 0);
        EXPECT_EQ(colour[2], 255);
    }
    const Picture drawn(
        host_.CallModule("OmbrixUtilities", "EnsurePictureCompatible", {host_.NewDrawing(9, 5)}).AsObject());
    EXPECT_EQ(drawn.Depth() * 100 + drawn.Width() * 10 + drawn.Height(), 3295);
    EXPECT_TRUE(host_.CallModule("OmbrixUtilities", "EnsurePictureBits", {nullptr, 32}).IsNil());
}

}  // namespace
}  // namespace ombrix::testing
