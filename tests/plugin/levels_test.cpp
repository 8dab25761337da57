// What the levels of instructions give, compared over whole domains. That one of them follows the formulas, the tests
// of the effects' values tell.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <vector>

#include "tests/plugin/effect_cases.h"
#include "tests/plugin/fake_host.h"

namespace ombrix::testing {
namespace {

using Values = std::vector<std::int64_t>;

class Levels : public ::testing::Test {
  protected:
    void SetUp() override {
        host_.Start();
        if (InstructionLevels().size() == 1) GTEST_SKIP() << "there is one level";
    }

    FakePicture* Painted(int width, int height, const std::function<std::uint32_t(int, int)>& wordAt) {
        FakePicture* picture = host_.NewPicture("picture", width, height, 32);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const std::uint32_t word = wordAt(x, y);
                std::memcpy(picture->Pixel(x, y), &word, sizeof word);
            }
        }
        return picture;
    }

    /// The picture's bytes after the effect in place, which it is given back from.
    std::vector<std::uint8_t> Run(FakeEffect& effect, const Values& values, FakePicture* picture, FakePicture* mask) {
        std::uint8_t* const bytes = picture->bytes->data();
        const std::vector<std::uint8_t> before(bytes, bytes + picture->bytes->size());
        ApplyInPlace(effect, values, picture, mask);
        EXPECT_EQ(effect.Base().ErrorCode, NO_ERROR);
        std::vector<std::uint8_t> after(bytes, bytes + picture->bytes->size());
        std::memcpy(bytes, before.data(), before.size());
        return after;
    }

    void ExpectAgreement(const char* className, const Values& values, FakePicture* picture, FakePicture* mask) {
        FakeEffect effect(className);
        const auto levels = InstructionLevels();
        std::vector<std::uint8_t> first;
        for (const InstructionLevel level : levels) {
            const LevelScope scope(level);
            const auto result = Run(effect, values, picture, mask);
            if (level == levels.front()) first = result;
            ASSERT_TRUE(result == first) << className << "(" << (values.empty() ? 0 : values[0]) << ") at level "
                                         << static_cast<int>(level) << (mask ? ", masked" : "");
        }
    }

    FakeHost host_;
};

TEST_F(Levels, AgreeForEveryValueAndEveryByteOfSourceAndMask) {
    const auto word = [](int alpha, int r, int g, int b) {
        return static_cast<std::uint32_t>(alpha & 255) | static_cast<std::uint32_t>(r & 255) << 8 |
               static_cast<std::uint32_t>(g & 255) << 16 | static_cast<std::uint32_t>(b & 255) << 24;
    };
    FakePicture* source = Painted(256, 256, [&](int x, int y) { return word(x * y, x, x + 85, 255 - x); });
    FakePicture* few = Painted(259, 3, [&](int x, int y) { return word(y, x, x + 85 * y, 255 - x); });
    FakePicture* mask =
        Painted(256, 256, [&](int x, int y) { return word(x, y, x % 7 == 0 ? 0 : y, x % 3 == 0 ? 0 : y); });
    std::vector<std::pair<const char*, Values>> trials{{"InvertEffect", {}}};
    for (int v = -255; v <= 255; ++v) trials.push_back({"BrightnessEffect", {v}});
    for (int v = -255; v <= 255; ++v) trials.push_back({"ColorFilterEffect", {v, -v, v * v % 511 - 255}});
    for (int v = -100; v <= 100; ++v) trials.push_back({"ContrastEffect", {v}});
    for (int v = 10; v <= 55; ++v) trials.push_back({"SepiaEffect", {v}});
    for (int v = 0; v <= 3; ++v) trials.push_back({"GrayscaleEffect", {v}});
    for (const auto& [className, values] : trials) {
        ASSERT_NO_FATAL_FAILURE(ExpectAgreement(className, values, few, nullptr));
        if (values.empty() || values[0] % 50 == 7 || values[0] < 4) {
            ASSERT_NO_FATAL_FAILURE(ExpectAgreement(className, values, source, mask));
        }
    }
}

TEST_F(Levels, AgreeForEveryColour) {
    FakePicture* colours =
        Painted(4096, 4096, [](int x, int y) { return static_cast<std::uint32_t>(y << 12 | x) << 8; });
    for (const auto& [className, value] :
         {std::pair{"GrayscaleEffect", 0}, {"GrayscaleEffect", 1}, {"SepiaEffect", 33}}) {
        ASSERT_NO_FATAL_FAILURE(ExpectAgreement(className, {value}, colours, nullptr));
    }
}

}  // namespace
}  // namespace ombrix::testing
