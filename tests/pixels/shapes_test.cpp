// Whatever the shape of the buffers, the colours that come out are those of the plainest one: 32 bits, no padding, one
// task, the instructions that every processor has. Nothing but the pixels' own bytes is written, and nothing beyond a
// buffer is touched: buffers end at an unreadable page.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "sdk/process_state.h"
#include "tests/support/effect_cases.h"
#include "tests/support/fake_host.h"

namespace ombrix::testing {
namespace {

using Colour = std::array<std::uint8_t, 3>;
using Positions = std::array<std::uint8_t, 4>;  // fourth byte, red, green, blue

/// The channel positions of a test, put back at its end.
class ChannelPositions {
  public:
    explicit ChannelPositions(const Positions& positions) { Set(positions); }
    ~ChannelPositions() { Set({0, 1, 2, 3}); }

  private:
    static void Set(const Positions& p) {
        NULL_PIX = p[0];
        RED_PIX = p[1];
        GREEN_PIX = p[2];
        BLUE_PIX = p[3];
    }
};

/// The byte offsets of red, green and blue in a pixel.
std::array<int, 3> Offsets(int bits, const Positions& positions) {
    std::array<int, 3> offsets{};
    for (int c = 0; c < 3; ++c) {
        offsets[c] = positions[c + 1] - (bits == 24 && positions[c + 1] > positions[0] ? 1 : 0);
    }
    return offsets;
}

void Paint(FakePicture& picture, const Positions& positions, int seed, bool withBlack) {
    const auto offsets = Offsets(picture.bits, positions);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const bool black = withBlack && (x + y) % 3 == 0;
            for (int c = 0; c < 3; ++c) {
                picture.Pixel(x, y)[offsets[c]] =
                    black ? 0 : static_cast<std::uint8_t>((x * 31 + y * 57 + c * 83 + x * y) * seed >> 2);
            }
        }
    }
}

std::vector<Colour> Colours(const FakePicture& picture, const Positions& positions) {
    const auto offsets = Offsets(picture.bits, positions);
    std::vector<Colour> colours;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const std::uint8_t* pixel = picture.Pixel(x, y);
            colours.push_back({pixel[offsets[0]], pixel[offsets[1]], pixel[offsets[2]]});
        }
    }
    return colours;
}

/// All bytes but those of the colours: fourth bytes and padding.
std::vector<std::uint8_t> Surroundings(const FakePicture& picture, const Positions& positions) {
    std::vector<std::uint8_t> bytes(picture.bytes->data(), picture.bytes->data() + picture.bytes->size());
    const auto offsets = Offsets(picture.bits, positions);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            for (const int offset : offsets) bytes[picture.Pixel(x, y) + offset - picture.bytes->data()] = 0;
        }
    }
    return bytes;
}

std::vector<std::uint8_t> FourthBytes(const FakePicture& picture, const Positions& positions) {
    std::vector<std::uint8_t> bytes;
    if (picture.bits != 32) return bytes;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) bytes.push_back(picture.Pixel(x, y)[positions[0]]);
    }
    return bytes;
}

std::vector<std::uint8_t> Bytes(const FakePicture& picture) {
    return {picture.bytes->data(), picture.bytes->data() + picture.bytes->size()};
}

struct Shape {
    int width, height, bits, padding;
    int maskBits, extraMaskWidth, extraMaskHeight, maskPadding;
    int hint;
    Positions positions;
    InstructionLevel level;
    bool streams = false;
};

enum class Masking { None, Other, Itself };

class Shapes : public ::testing::TestWithParam<EffectCase> {
  protected:
    void SetUp() override { host_.Start(); }

    /// The colours that the effect gives for the plainest shape.
    std::vector<Colour> Reference(int width, int height, Masking masking) {
        const LevelScope level(InstructionLevel::Baseline);
        const Positions plain{0, 1, 2, 3};
        FakePicture* source = host_.NewPicture("source", width, height, 32);
        FakePicture* mask = host_.NewPicture("mask", width, height, 32);
        Paint(*source, plain, 3, true);
        Paint(*mask, plain, 5, true);
        if (masking == Masking::None) mask = nullptr;
        if (masking == Masking::Itself) mask = source;
        FakeEffect effect(GetParam().className);
        effect.Base().MultiprocessingHint = 1;
        return Colours(*Apply(effect, GetParam().values, source, mask), plain);
    }

    void Check(const Shape& shape, Masking masking) {
        const auto expected = Reference(shape.width, shape.height, masking);
        const ChannelPositions positions(shape.positions);
        const LevelScope level(shape.level);
        const StreamingScope streaming(shape.streams);
        host_.rowPadding = shape.padding + 5;  // the destination's differs from the source's
        FakePicture* source = host_.NewPicture("source", shape.width, shape.height, shape.bits, shape.padding);
        FakePicture* mask = host_.NewPicture("mask", shape.width + shape.extraMaskWidth,
                                             shape.height + shape.extraMaskHeight, shape.maskBits, shape.maskPadding);
        Paint(*source, shape.positions, 3, true);
        Paint(*mask, shape.positions, 5, true);
        if (masking == Masking::None) mask = nullptr;
        if (masking == Masking::Itself) mask = source;
        const auto before = Bytes(*source);
        const auto surroundings = Surroundings(*source, shape.positions);
        const auto maskBefore = mask ? Bytes(*mask) : before;

        FakeEffect effect(GetParam().className);
        effect.Base().MultiprocessingHint = shape.hint;
        FakePicture* result = Apply(effect, GetParam().values, source, mask);
        ASSERT_TRUE(result);
        EXPECT_EQ(effect.Base().ErrorCode, NO_ERROR);
        EXPECT_EQ(Colours(*result, shape.positions), expected);
        EXPECT_EQ(FourthBytes(*result, shape.positions), FourthBytes(*source, shape.positions));
        EXPECT_EQ(Bytes(*source), before);
        EXPECT_EQ(mask ? Bytes(*mask) : before, maskBefore);
        // The padding of the result is as the host made it.
        const FakePicture* untouched =
            host_.NewPicture("untouched", shape.width, shape.height, shape.bits, shape.padding + 5);
        for (int y = 0; y + 1 < shape.height; ++y) {
            const auto used = static_cast<std::size_t>(shape.width * shape.bits / 8);
            ASSERT_TRUE(std::equal(result->Pixel(0, y) + used, result->Pixel(0, y) + result->rowBytes,
                                   untouched->Pixel(0, y) + used));
        }

        ApplyInPlace(effect, GetParam().values, source, mask);
        EXPECT_EQ(effect.Base().ErrorCode, NO_ERROR);
        EXPECT_EQ(Colours(*source, shape.positions), expected);
        EXPECT_EQ(Surroundings(*source, shape.positions), surroundings);
        EXPECT_EQ(host_.Locks(), 0);
        host_.pictures.clear();
    }

    FakeHost host_;
};

TEST_P(Shapes, SizesPaddingsDepthsAndTasksGiveTheSameColours) {
    const std::vector<InstructionLevel> levels = InstructionLevels();
    int combination = 0;
    for (const int width : {1, 2, 3, 7, 16, 33, 67, 523}) {
        for (const int height : {1, 2, 15, 16, 17, 37}) {
            for (const int bits : {24, 32}) {
                for (const int maskBits : {24, 32}) {
                    for (const int hint : {-1, 0, 1, 2, 3, 5, 8}) {
                        // Paddings and the mask's extra size go round with counts that share no factor.
                        const int n = combination++;
                        const InstructionLevel level = levels[n % levels.size()];
                        const Shape shape{width, height, bits, n % 11,       maskBits, n % 5,
                                          n % 3, n % 13, hint, {0, 1, 2, 3}, level,    n % 5 < 2};
                        SCOPED_TRACE(::testing::Message() << width << "x" << height << " " << bits << "/" << maskBits
                                                          << " bits, hint " << hint << ", combination " << n);
                        Check(shape, static_cast<Masking>(n % 3));
                        if (HasFailure()) return;
                    }
                }
            }
        }
    }
}

TEST_P(Shapes, ChannelPositionsMayBePermuted) {
    Positions positions{0, 1, 2, 3};
    do {
        for (const int bits : {24, 32}) {
            for (const int maskBits : {24, 32}) {
                SCOPED_TRACE(::testing::Message() << int{positions[0]} << int{positions[1]} << int{positions[2]}
                                                  << int{positions[3]} << " " << bits << "/" << maskBits);
                const Shape shape{19, 21, bits, 3, maskBits, 2, 1, 1, 2, positions, BestInstructionLevel()};
                for (const Masking masking : {Masking::None, Masking::Other}) {
                    Check(shape, masking);
                    if (HasFailure()) return;
                }
            }
        }
    } while (std::next_permutation(positions.begin(), positions.end()));
}

TEST_P(Shapes, EmptyPicturesAreNoError) {
    for (const auto& [width, height] : {std::pair{0, 0}, {0, 20}, {20, 0}, {-5, 20}, {20, -5}, {-1, -1}}) {
        for (const int hint : {1, 8}) {
            FakePicture* source = host_.NewPicture("source", width, height, 32);
            FakePicture* mask = host_.NewPicture("mask", width, height, 24);
            source->hidesBase = mask->hidesBase = true;  // there is nothing that could be read
            FakeEffect effect(GetParam().className);
            effect.Base().MultiprocessingHint = hint;
            effect.Base().progressHandler = host_.ProgressHandler();
            FakePicture* result = Apply(effect, GetParam().values, source, mask);
            ASSERT_TRUE(result);
            EXPECT_EQ(result->width, width);
            EXPECT_EQ(effect.Base().ErrorCode, NO_ERROR);
            ApplyInPlace(effect, GetParam().values, source, nullptr);
            EXPECT_EQ(effect.Base().ErrorCode, NO_ERROR);
            EXPECT_EQ(host_.reports.back(), std::pair(std::int64_t{height}, std::int64_t{height}));
            EXPECT_EQ(host_.Locks(), 0);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Effects, Shapes, ::testing::ValuesIn(EffectCases()), NameOf);

}  // namespace
}  // namespace ombrix::testing
