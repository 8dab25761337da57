// The utilities: what they ask of a host, and that they give everything back when it refuses.
#include "plugin/utilities.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>

#include "effects/map_effect.h"
#include "plugin/function_lookup.h"
#include "tests/support/effect_cases.h"
#include "tests/support/fake_host.h"

namespace ombrix::testing {
namespace {

using ::testing::ElementsAre;

constexpr const char* kDrawPicture =
    "DrawPicture(image as Picture,x as Integer,y as Integer,w1 as Integer,h1 as Integer,sx as Integer,"
    "sy as Integer,w2 as Integer,h2 as Integer)";

FakePicture* Picture(REALobjectStruct* handle) { return reinterpret_cast<FakePicture*>(handle); }

class Utilities : public ::testing::Test {
  protected:
    void SetUp() override { host_.Start(); }

    FakeHost host_;
};

TEST_F(Utilities, KeepWhatFits) {
    for (const int bits : {16, 24, 32}) {
        FakePicture* source = host_.NewPicture("source", 7, 5, bits);
        EXPECT_EQ(Picture(EnsurePictureBits(source->Handle(), bits)), source);
        EXPECT_EQ(source->references, 2);
        EXPECT_EQ(source->locks, 0);
        const bool fits = bits != 16;
        EXPECT_EQ(Picture(EnsureCompatible(source->Handle())) == source, fits);
        EXPECT_EQ(source->references, fits ? 3 : 2);
        // All 64 bits of the depth count.
        EXPECT_NE(Picture(EnsurePictureBits(source->Handle(), (std::int64_t{1} << 32) + bits)), source);
    }
}

TEST_F(Utilities, DrawTheWholePictureUnscaledAndHandItsMaskOn) {
    FakePicture* source = host_.NewPicture("source", 7, 5, 32);
    source->mask = host_.NewPicture("mask", 7, 5, 32);
    FakePicture* result = Picture(EnsurePictureBits(source->Handle(), 24));
    EXPECT_THAT(host_.log,
                ElementsAre("lock source", "unlock source", "graphics draws source 0 0 -10000 -10000 0 0 -10000 -10000",
                            "release graphics", "release mask"));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->bits, 24);
    EXPECT_EQ(result->width * 100 + result->height, 705);
    EXPECT_EQ(result->references, 1);
    EXPECT_EQ(result->mask, source->mask);
    EXPECT_EQ(source->references, 1);

    FakePicture* drawing = host_.NewPicture("drawing", 9, 4, 32);
    drawing->isDrawing = true;
    result = Picture(EnsureCompatible(drawing->Handle()));
    ASSERT_TRUE(result);
    EXPECT_NE(result, drawing);
    EXPECT_EQ(result->bits * 10000 + result->width * 100 + result->height, 320904);
    EXPECT_EQ(host_.Locks(), 0);
}

TEST_F(Utilities, GiveNilAndKeepNothingWhenTheHostWillNot) {
    const std::function<void(FakePicture&)> refusals[] = {
        [](FakePicture& source) { source.refusesLock = true; },
        [this](FakePicture&) { host_.refusesInstances = true; },
        [this](FakePicture&) { host_.refusesInstances = false, host_.hasNoGraphics = true; },
        [this](FakePicture&) { host_.hasNoGraphics = false, host_.missing = {kDrawPicture}; },
    };
    EXPECT_EQ(EnsurePictureBits(nullptr, 32), nullptr);
    EXPECT_EQ(EnsureCompatible(nullptr), nullptr);
    for (const auto& refuse : refusals) {
        FakePicture* source = host_.NewPicture("source", 7, 5, 16);
        refuse(*source);
        EXPECT_EQ(EnsurePictureBits(source->Handle(), 32), nullptr);
        EXPECT_EQ(EnsureCompatible(source->Handle()), nullptr);
        EXPECT_EQ(source->references, 1);
        EXPECT_EQ(host_.LiveResults(), 0);
        EXPECT_EQ(host_.Locks(), 0);
        for (const auto& picture : host_.pictures) {
            EXPECT_TRUE(picture->name != "graphics" || picture->references == 0);
        }
    }
}

TEST_F(Utilities, AreFoundByNumber) {
    FakeEffect effect("MPImageFilter");
    EXPECT_EQ(effect.Base().GetFunction(1), reinterpret_cast<void*>(ApplyMapEffect));
    EXPECT_EQ(effect.Base().GetFunction(2), reinterpret_cast<void*>(ApplyMapEffectInPlace));
    EXPECT_EQ(effect.Base().GetFunction(3), reinterpret_cast<void*>(EnsurePictureBits));
    for (const int number : {0, 4, -1, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(effect.Base().GetFunction(number), nullptr);
    }
}

class MapEffect : public Utilities {
  protected:
    MapEffect() {
        for (int i = 0; i < 256; ++i) {
            red_[i] = static_cast<std::uint8_t>(255 - i);
            green_[i] = static_cast<std::uint8_t>(i * i);
            blue_[i] = static_cast<std::uint8_t>(i ^ 0x55);
        }
        params_.redTable = red_;
        params_.greenTable = green_;
        params_.blueTable = blue_;
    }

    std::uint8_t red_[256], green_[256], blue_[256];
    MapParams params_{};
};

TEST_F(MapEffect, LooksEveryChannelUpInItsOwnTable) {
    FakeEffect object("MPImageFilter");
    for (std::size_t n = 0; n < 2 * InstructionLevels().size(); ++n) {
        const LevelScope level(InstructionLevels()[n / 2]);
        const int bits = n % 2 == 0 ? 24 : 32;
        FakePicture* source = host_.NewPicture("source", 256, 17, bits);
        source->mask = host_.NewPicture("mask", 256, 17, 32);
        FakePicture* result = Picture(ApplyMapEffect(&object.Base(), source->Handle(), nullptr, &params_));
        ASSERT_TRUE(result);
        EXPECT_EQ(result->mask, nullptr);
        const int first = bits / 8 - 3;  // the byte of red
        for (int y = 0; y < 17; ++y) {
            for (int x = 0; x < 256; ++x) {
                const std::uint8_t* s = source->Pixel(x, y) + first;
                const std::uint8_t* d = result->Pixel(x, y) + first;
                ASSERT_EQ((std::array{d[0], d[1], d[2]}), (std::array{red_[s[0]], green_[s[1]], blue_[s[2]]}));
            }
        }
        // A white mask keeps the source, less 1, whatever the tables hold.
        FakePicture* white = host_.NewPicture("white", 256, 17, 32);
        std::fill_n(white->bytes->data(), white->bytes->size(), std::uint8_t{255});
        const FakePicture* before = host_.NewPicture("source", 256, 17, bits);
        ApplyMapEffectInPlace(&object.Base(), source->Handle(), white->Handle(), &params_);
        for (int x = 0; x < 256; ++x) {
            const int s = before->Pixel(x, 3)[first];
            ASSERT_EQ(source->Pixel(x, 3)[first], s ? s - 1 : 0);
        }
    }
    EXPECT_EQ(host_.Locks(), 0);
}

TEST_F(MapEffect, NeedsASourceAndThreeTables) {
    FakeEffect object("MPImageFilter");
    MPImageFilterData* base = &object.Base();
    FakePicture* source = host_.NewPicture("source", 5, 5, 32);
    EXPECT_EQ(ApplyMapEffect(nullptr, source->Handle(), nullptr, &params_), nullptr);
    ApplyMapEffectInPlace(nullptr, source->Handle(), nullptr, &params_);

    const auto refused = [&](REALobjectStruct* from, MapParams* params) {
        base->ErrorCode = 99;
        const bool isNil = ApplyMapEffect(base, from, nullptr, params) == nullptr;
        const bool told = base->ErrorCode == ILLEGAL_INPUT_PARAMETER;
        base->ErrorCode = 99;
        ApplyMapEffectInPlace(base, from, nullptr, params);
        return isNil && told && base->ErrorCode == ILLEGAL_INPUT_PARAMETER;
    };
    EXPECT_TRUE(refused(nullptr, &params_));
    EXPECT_TRUE(refused(source->Handle(), nullptr));
    for (const std::uint8_t* MapParams::*table :
         {&MapParams::redTable, &MapParams::greenTable, &MapParams::blueTable}) {
        MapParams incomplete{};
        incomplete.redTable = red_;
        incomplete.greenTable = green_;
        incomplete.blueTable = blue_;
        incomplete.*table = nullptr;
        EXPECT_TRUE(refused(source->Handle(), &incomplete));
    }
    EXPECT_FALSE(refused(source->Handle(), &params_));
}

}  // namespace
}  // namespace ombrix::testing
