// The compositor over combinations of place, size, opacity, mask, depth and task count.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>
#include <memory>

#include "blend/blend_procs.h"
#include "sdk/process_state.h"
#include "tests/support/effect_cases.h"
#include "tests/support/fake_host.h"

namespace ombrix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Handle = REALobjectStruct*;
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

Handle HandleOf(FakePicture* picture) { return picture ? picture->Handle() : nullptr; }

std::array<int, 3> Colour(const FakePicture& picture, int x, int y) {
    const std::uint8_t* first = picture.Pixel(x, y) + (picture.bits == 32 ? 1 : 0);
    return {first[0], first[1], first[2]};
}

class Compositor : public ::testing::Test {
  protected:
    void SetUp() override {
        host_.Start();
        host_.rowPadding = 3;
        effect_ = std::make_unique<FakeEffect>("BlendEffect");
    }

    void SetMode(std::int64_t mode) {
        using Setter = void(Handle, std::int64_t, std::int64_t);
        const auto setter = host_.classes.at("BlendEffect")->properties[0].setter.function;
        reinterpret_cast<Setter*>(setter)(effect_->Handle(), 0, mode);
    }

    std::int64_t Mode() {
        using Getter = std::int64_t(Handle, std::int64_t);
        const auto getter = host_.classes.at("BlendEffect")->properties[0].getter.function;
        return reinterpret_cast<Getter*>(getter)(effect_->Handle(), 0);
    }

    FakePicture* Apply(FakePicture* source, FakePicture* fill, double opacity = 1.0, FakePicture* mask = nullptr,
                       FakePicture* location = nullptr, FakePicture* size = nullptr) {
        const auto apply = effect_->Method<Handle(Handle, Handle, Handle, double, Handle, Handle, Handle)>(0);
        return reinterpret_cast<FakePicture*>(apply(effect_->Handle(), HandleOf(source), HandleOf(fill), opacity,
                                                    HandleOf(mask), HandleOf(location), HandleOf(size)));
    }

    std::int64_t& ErrorCode() { return effect_->Base().ErrorCode; }

    /// The colour that a pixel must have. The fill is `sx` by `sy` pixels at (`lx`, `ly`).
    std::array<int, 3> Expected(int mode, const FakePicture& source, const FakePicture& fill, double opacity,
                                const FakePicture* mask, __int128 lx, __int128 ly, __int128 sx, __int128 sy, int x,
                                int y) {
        if (sx < 0 || sx > fill.width) sx = fill.width;
        if (sy < 0 || sy > fill.height) sy = fill.height;
        std::array<int, 3> result = Colour(source, x, y);
        const std::array<int, 3> below = result;
        if (x < lx || x >= lx + sx || y < ly || y >= ly + sy) return below;
        const int fx = static_cast<int>(x - lx);
        const int fy = static_cast<int>(y - ly);
        result = Colour(fill, fx, fy);
        if (mode != 0) {
            const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
            const std::uint8_t s[4] = {0, byte(below[0]), byte(below[1]), byte(below[2])};
            const std::uint8_t f[4] = {0, byte(result[0]), byte(result[1]), byte(result[2])};
            std::uint8_t d[4];
            FindBlendProc(mode)(s, f, d);
            result = {d[1], d[2], d[3]};
        }
        opacity = opacity > 1.0 ? 1.0 : opacity < 0.0 ? 0.0 : opacity;
        if (mode == 0 || opacity != 1.0) {
            const int sourceWeight = static_cast<int>((1.0 - opacity) * 256.0);
            const int fillWeight = static_cast<int>(256.0 * opacity);
            for (int c = 0; c < 3; ++c) result[c] = (below[c] * sourceWeight + result[c] * fillWeight) >> 8;
        }
        if (mask) {
            const int m = Colour(*mask, fx, fy)[0];
            for (int c = 0; c < 3; ++c) result[c] = (below[c] * m + (255 - m) * result[c]) >> 8;
        }
        return result;
    }

    FakeHost host_;
    std::unique_ptr<FakeEffect> effect_;
};

TEST_F(Compositor, PlacesCropsMixesAndMasks) {
    constexpr int kWidth = 41, kHeight = 23, kFillWidth = 19, kFillHeight = 12;
    const std::pair<std::int64_t, std::int64_t> locations[] = {
        {0, 0},   {-4, -3},    {30, 15},       {-18, 0},    {-19, 0},       {41, 0},          {40, 22},
        {5, -11}, {kLeast, 0}, {kMost, kMost}, {3, kLeast}, {3, kMost - 5}, {kLeast, kLeast}, {-1, 17},
    };
    const std::pair<std::int64_t, std::int64_t> sizes[] = {
        {-1, 1000}, {7, 5}, {0, 10}, {kMost, kLeast}, {19, 1}, {1, 12},
    };
    const double opacities[] = {1.0, 0.3, 0.0, 2.5, -1.0, 0.5};
    const int modes[] = {0, 1, 3, 12, 15, 23, 99, -1};
    int n = 0;
    for (const auto& [lx, ly] : locations) {
        for (const auto& [sx, sy] : sizes) {
            for (const double opacity : opacities) {
                for (const bool masked : {false, true}) {
                    const int mode = modes[n % 8];
                    const int bits = n % 3 == 0 ? 24 : 32;
                    const int fillBits = n % 5 == 0 ? 24 : 32;
                    const int maskBits = n % 7 == 0 ? 24 : 32;
                    effect_->Base().MultiprocessingHint = n % 9;
                    ++n;
                    SCOPED_TRACE(::testing::Message() << lx << "," << ly << " size " << sx << "," << sy << " opacity "
                                                      << opacity << " masked " << masked << " mode " << mode << " bits "
                                                      << bits << "/" << fillBits << "/" << maskBits);
                    FakePicture* source = host_.NewPicture("source", kWidth, kHeight, bits, 2);
                    FakePicture* fill = host_.NewPicture("fill", kFillWidth, kFillHeight, fillBits, 7);
                    FakePicture* mask =
                        masked ? host_.NewPicture("mask", kFillWidth + n % 2, kFillHeight, maskBits, 1) : nullptr;
                    SetMode(mode);
                    FakePicture* result =
                        Apply(source, fill, opacity, mask, host_.NewPoint(lx, ly), host_.NewPoint(sx, sy));
                    ASSERT_TRUE(result);
                    for (int y = 0; y < kHeight; ++y) {
                        for (int x = 0; x < kWidth; ++x) {
                            ASSERT_EQ(Colour(*result, x, y),
                                      Expected(mode, *source, *fill, opacity, mask, lx, ly, sx, sy, x, y))
                                << x << "," << y;
                            if (bits == 32) {
                                ASSERT_EQ(*result->Pixel(x, y), *source->Pixel(x, y));
                            }
                        }
                    }
                    EXPECT_EQ(host_.Locks(), 0);
                    host_.pictures.clear();
                }
            }
        }
    }
}

// Sanitizers are slow, and look for other faults than wrong colours.
#if defined(OMBRIX_SLOW_TESTS)
constexpr int kRowStep = 16;
#else
constexpr int kRowStep = 1;
#endif

TEST_F(Compositor, LoopsOverWordsDoWhatTheProcsDo) {
    // All pairs of bytes in every mode, with and without opacity and mask.
    FakePicture* source = host_.NewPicture("source", 256, 256, 32);
    FakePicture* fill = host_.NewPicture("fill", 256, 256, 32);
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x) {
            const auto set = [](std::uint8_t* pixel, int r, int g, int b) {
                pixel[1] = static_cast<std::uint8_t>(r);
                pixel[2] = static_cast<std::uint8_t>(g);
                pixel[3] = static_cast<std::uint8_t>(b);
            };
            set(source->Pixel(x, y), x, y * 3, 255 - x);
            set(fill->Pixel(x, y), y, x * 5 + y, x ^ y);
        }
    }
    FakePicture* mask = host_.NewPicture("mask", 256, 256, 32);
    for (int mode = 0; mode <= 23; ++mode) {
        SetMode(mode);
        for (const double opacity : {1.0, 0.6}) {
            for (FakePicture* by : {static_cast<FakePicture*>(nullptr), mask}) {
                std::vector<const FakePicture*> results;
                for (const InstructionLevel level : InstructionLevels()) {
                    const LevelScope scope(level);
                    results.push_back(Apply(source, fill, opacity, by));
                }
                for (int y = 0; y < 256; y += kRowStep) {
                    for (int x = 0; x < 256; ++x) {
                        const auto expected = Expected(mode, *source, *fill, opacity, by, 0, 0, 256, 256, x, y);
                        for (std::size_t level = 0; level < results.size(); ++level) {
                            ASSERT_EQ(Colour(*results[level], x, y), expected)
                                << "mode " << mode << " at " << x << "," << y << ", level " << level;
                        }
                    }
                }
            }
        }
    }
}

TEST_F(Compositor, LongRowsAreWorkedOnInPieces) {
    constexpr int kWidth = 1100, kFillWidth = 1060, kLeft = 17;
    int n = 0;
    for (const int mode : {0, 1, 12}) {
        for (const int depths : {0, 1, 2, 3, 4, 5, 6, 7}) {
            for (const bool masked : {false, true}) {
                SCOPED_TRACE(::testing::Message() << "mode " << mode << ", depths " << depths << ", masked " << masked);
                const LevelScope level(InstructionLevels()[++n % InstructionLevels().size()]);
                const StreamingScope streaming(n % 3 == 0);
                const auto bits = [depths](int role) { return depths >> role & 1 ? 24 : 32; };
                FakePicture* source = host_.NewPicture("source", kWidth, 3, bits(0), n % 4);
                FakePicture* fill = host_.NewPicture("fill", kFillWidth, 3, bits(1));
                FakePicture* mask = masked ? host_.NewPicture("mask", kFillWidth, 3, bits(2)) : nullptr;
                SetMode(mode);
                const FakePicture* result = Apply(source, fill, 0.6, mask, host_.NewPoint(kLeft, 0));
                for (int y = 0; y < 3; ++y) {
                    for (int x = 0; x < kWidth; ++x) {
                        ASSERT_EQ(Colour(*result, x, y),
                                  Expected(mode, *source, *fill, 0.6, mask, kLeft, 0, kFillWidth, 3, x, y))
                            << x << "," << y;
                    }
                }
            }
        }
    }
}

TEST_F(Compositor, OnePictureInAllRoles) {
    FakePicture* picture = host_.NewPicture("picture", 30, 20, 32);
    SetMode(10);
    const FakePicture* result = Apply(picture, picture, 1.0, picture, host_.NewPoint(3, 4));
    ASSERT_TRUE(result);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 30; ++x) {
            ASSERT_EQ(Colour(*result, x, y), Expected(10, *picture, *picture, 1.0, picture, 3, 4, -1, -1, x, y));
        }
    }
}

TEST_F(Compositor, LocksInOrderAndLeavesTheErrorCodeAlone) {
    FakePicture* source = host_.NewPicture("source", 30, 20, 32);
    source->mask = host_.NewPicture("attached", 30, 20, 32);
    FakePicture* fill = host_.NewPicture("fill", 30, 20, 24);
    FakePicture* mask = host_.NewPicture("mask", 30, 20, 32);
    ErrorCode() = 42;
    const FakePicture* result = Apply(source, fill, 1.0, mask);
    ASSERT_TRUE(result);
    EXPECT_THAT(host_.log, ElementsAre("lock source", "lock fill", "lock result", "lock mask", "unlock mask",
                                       "unlock fill", "unlock source", "unlock result"));
    EXPECT_EQ(ErrorCode(), 42);
    EXPECT_EQ(result->mask, nullptr);
}

TEST_F(Compositor, RefusesWhatWillNotDoAndGivesEverythingBack) {
    struct Refusal {
        const char* what;
        std::function<void(FakeHost&, FakePicture& source, FakePicture& fill, FakePicture& mask)> arrange;
        std::int64_t error;
    };
    const Refusal refusals[] = {
        {"source cannot be locked", [](auto&, auto& source, auto&, auto&) { source.refusesLock = true; }, 2},
        {"fill cannot be locked", [](auto&, auto&, auto& fill, auto&) { fill.refusesLock = true; }, 2},
        {"source of 16 bits", [](auto&, auto& source, auto&, auto&) { source.bits = 16; }, 2},
        {"fill of 16 bits", [](auto&, auto&, auto& fill, auto&) { fill.bits = 16; }, 2},
        {"fill with short rows", [](auto&, auto&, auto& fill, auto&) { fill.rowBytes = 79; }, 2},
        {"no new pictures", [](auto& host, auto&, auto&, auto&) { host.refusesInstances = true; }, 3},
        {"new picture locked", [](auto& host, auto&, auto&, auto&) { host.refusesDestinationLock = true; }, 3},
        {"new picture too narrow", [](auto& host, auto&, auto&, auto&) { host.destinationWidthError = -1; }, 3},
        {"mask cannot be locked", [](auto&, auto&, auto&, auto& mask) { mask.refusesLock = true; }, 1},
        {"mask of 16 bits", [](auto&, auto&, auto&, auto& mask) { mask.bits = 16; }, 1},
        {"mask too narrow", [](auto&, auto&, auto&, auto& mask) { mask.width = 15; }, 1},
        {"mask too low", [](auto&, auto&, auto&, auto& mask) { mask.height = 12; }, 1},
    };
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.what);
        FakeHost host;
        host.Start();
        // The fill lies at (-4, -3) on a source of 12 x 10: 16 columns and 13 rows of it are used.
        FakePicture* source = host.NewPicture("source", 12, 10, 32);
        FakePicture* fill = host.NewPicture("fill", 20, 20, 32);
        FakePicture* mask = host.NewPicture("mask", 16, 13, 32);
        FakePicture* location = host.NewPoint(-4, -3);
        effect_ = std::make_unique<FakeEffect>("BlendEffect");
        EXPECT_TRUE(Apply(source, fill, 1.0, mask, location));
        const int live = host.LiveResults();

        refusal.arrange(host, *source, *fill, *mask);
        EXPECT_EQ(Apply(source, fill, 1.0, mask, location), nullptr);
        EXPECT_EQ(ErrorCode(), refusal.error);
        EXPECT_EQ(host.Locks(), 0);
        EXPECT_EQ(host.LiveResults(), live);
        effect_.reset();
    }

    FakeHost host;
    host.Start();
    effect_ = std::make_unique<FakeEffect>("BlendEffect");
    FakePicture* source = host.NewPicture("source", 12, 10, 32);
    EXPECT_EQ(Apply(nullptr, source), nullptr);
    EXPECT_EQ(ErrorCode(), INVALID_SOURCE_IMAGE);
    ErrorCode() = NO_ERROR;
    EXPECT_EQ(Apply(source, nullptr), nullptr);
    EXPECT_EQ(ErrorCode(), INVALID_SOURCE_IMAGE);
    EXPECT_THAT(host.log, IsEmpty());

    // Where nothing is covered, the mask may be of any size.
    FakePicture* tiny = host.NewPicture("tiny", 1, 1, 32);
    EXPECT_TRUE(Apply(source, source, 1.0, tiny, host.NewPoint(12, 0)));
    EXPECT_FALSE(Apply(source, source, 1.0, tiny, host.NewPoint(10, 0)));
    effect_.reset();
}

TEST_F(Compositor, OddArgumentsWork) {
    FakePicture* source = host_.NewPicture("source", 12, 10, 32);
    FakePicture* fill = host_.NewPicture("fill", 5, 4, 32);
    FakePicture* point = host_.NewPoint(7, 6);
    point->unreadable = "y";
    const FakePicture* result = Apply(source, fill, std::numeric_limits<double>::quiet_NaN(), nullptr, point, point);
    ASSERT_TRUE(result);
    // The opacity counts as 1, the location's y as 0, the size as the fill's.
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 12; ++x) {
            const bool covered = x >= 7 && y < 4;
            EXPECT_EQ(Colour(*result, x, y), covered ? Colour(*fill, x - 7, y) : Colour(*source, x, y));
        }
    }
    for (const std::int64_t mode : {std::int64_t{99}, std::int64_t{-1}, std::int64_t{7}}) {
        SetMode(mode);
        EXPECT_EQ(Mode(), mode);
    }
    SetMode((std::int64_t{1} << 32) + 5);
    EXPECT_EQ(Mode(), 5);
}

}  // namespace
}  // namespace ombrix::testing
