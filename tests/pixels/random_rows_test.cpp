// Rows of random widths, depths, alignments, channel orders, roles that share pixels, and mixes, at every level,
// against a plain walk over pixels. Buffers end at an unreadable page.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "blend/loops.h"
#include "blend/modes.h"
#include "effects/contrast_line.h"
#include "effects/loops.h"
#include "tests/support/effect_cases.h"

namespace ombrix::testing {
namespace {

constexpr int kSeed = 20;
#if defined(OMBRIX_SLOW_TESTS)
constexpr int kRows = 400;
#else
constexpr int kRows = 6000;
#endif

/// Pixels behind some bytes that are not theirs.
struct Pixels {
    Pixels(int before, int count, int bytesPerPixel)
        : bytes(std::make_unique<GuardedBytes>(static_cast<std::size_t>(before + count * bytesPerPixel))),
          before(before),
          bytesPerPixel(bytesPerPixel) {}

    PixelRow Row() const { return {bytes->data() + before, bytesPerPixel}; }
    std::vector<std::uint8_t> Copy() const { return {bytes->data(), bytes->data() + bytes->size()}; }

    std::unique_ptr<GuardedBytes> bytes;
    int before;
    int bytesPerPixel;
};

/// What may follow the formula.
enum class Mixing { None, EffectMask, Opacity, FillMask };

class RandomRows : public ::testing::TestWithParam<InstructionLevel> {
  protected:
    int Below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }

    Pixels Painted(int count, int bytesPerPixel) {
        Pixels pixels(Below(2) ? 0 : Below(64), count, bytesPerPixel);
        const int kind = Below(5);  // noise, greys, black and white, one colour, noise with black
        std::uint8_t colour[4];
        for (std::uint8_t& byte : colour) byte = static_cast<std::uint8_t>(Below(256));
        for (int i = -pixels.before; i < count * bytesPerPixel; ++i) {
            std::uint8_t& byte = pixels.bytes->data()[pixels.before + i];
            const bool isFirst = i < 0 || i % bytesPerPixel == 0;
            const int noise = Below(256);
            if (isFirst) colour[0] = static_cast<std::uint8_t>(kind == 1 || Below(3) ? noise : 0);
            byte = static_cast<std::uint8_t>(kind == 0   ? noise
                                             : kind == 1 ? colour[0]
                                             : kind == 2 ? noise & 1 ? 255 : 0
                                             : kind == 3 ? colour[1 + std::max(i, 0) % bytesPerPixel % 3]
                                             : colour[0] ? noise
                                                         : 0);
        }
        return pixels;
    }

    PixelFormat Format() {
        int positions[] = {0, 1, 2, 3};
        if (Below(3)) std::shuffle(positions, positions + 4, random_);
        return {.red = positions[1], .green = positions[2], .blue = positions[3], .fourth = positions[0]};
    }

    static int Offset(int bytesPerPixel, int position, const PixelFormat& format) {
        return position - (bytesPerPixel == 3 && position > format.fourth);
    }

    static Rgb<int> ColourAt(const std::uint8_t* pixel, int bytesPerPixel, const PixelFormat& format) {
        return {pixel[Offset(bytesPerPixel, format.red, format)], pixel[Offset(bytesPerPixel, format.green, format)],
                pixel[Offset(bytesPerPixel, format.blue, format)]};
    }

    static int Mixed(Mixing mixing, const RowSettings& settings, int source, int result, int mask, int red,
                     bool isBlack) {
        if (mixing == Mixing::EffectMask) return isBlack ? result : (source * mask + (255 - mask) * result) >> 8;
        if (mixing == Mixing::None) return result;
        const int opaque = (source * settings.sourceWeight + result * settings.fillWeight) >> 8;
        return mixing == Mixing::Opacity ? opaque : (source * red + (255 - red) * opaque) >> 8;
    }

    template <bool hasFill, class Formula>
    void Try(const char* name, const Formula& formula, RowLoop loop, Mixing mixing) {
        const bool hasMask = mixing == Mixing::EffectMask || mixing == Mixing::FillMask;
        constexpr int kEnds[] = {0, 1, 15, 16, 17, 63, 64, 65, 255, 256, 257, 512, 575, 576};
        const int count = Below(3) ? Below(700) : kEnds[Below(14)];
        const int depth = 3 + Below(2);
        const PixelFormat format = Format();
        Pixels source = Painted(count, depth);
        Pixels otherFill = Painted(count, Below(3) ? depth : 7 - depth);
        Pixels otherMask = Painted(count, Below(3) ? depth : 7 - depth);
        const Pixels& fill = Below(6) ? otherFill : source;
        const Pixels& mask = Below(6) ? otherMask : Below(2) ? source : fill;
        Pixels destination = Painted(count, depth);
        const bool isInPlace = Below(3) == 0;
        const double opacity = Below(5) * 0.25;
        const RowSettings settings{.formula = &formula,
                                   .format = format,
                                   .isStreamed = Below(2) == 0,
                                   .sourceWeight = mixing == Mixing::None ? 0 : static_cast<int>((1.0 - opacity) * 256),
                                   .fillWeight = mixing == Mixing::None ? 256 : static_cast<int>(opacity * 256)};
        const std::vector<std::uint8_t> before[] = {source.Copy(), fill.Copy(), mask.Copy()};
        Pixels& target = isInPlace ? source : destination;
        std::vector<std::uint8_t> expected = target.Copy();

        Row row{.source = source.Row(), .destination = const_cast<std::uint8_t*>(target.Row().pixels), .count = count};
        if (hasFill) row.fill = fill.Row();
        if (hasMask) row.mask = mask.Row();
        loop(row, settings);

        for (int x = 0; x < count; ++x) {
            const auto colour = [&](const Pixels& role, const std::vector<std::uint8_t>& bytes) {
                return ColourAt(bytes.data() + role.before + x * role.bytesPerPixel, role.bytesPerPixel, format);
            };
            const Rgb<int> s = colour(source, before[0]);
            const Rgb<int> m = hasMask ? colour(mask, before[2]) : Rgb<int>{};
            Rgb<int> r;
            if constexpr (hasFill) {
                r = Apply(formula, s, colour(fill, before[1]));
            } else {
                r = Apply(formula, s);
            }
            const bool isBlack = m.red == 0 && m.green == 0 && m.blue == 0;
            std::uint8_t* const pixel = expected.data() + target.before + x * depth;
            const auto put = [&](int position, int s, int r, int m_) {
                pixel[Offset(depth, position, format)] =
                    static_cast<std::uint8_t>(Mixed(mixing, settings, s, r, m_, m.red, isBlack));
            };
            put(format.red, s.red, r.red, m.red);
            put(format.green, s.green, r.green, m.green);
            put(format.blue, s.blue, r.blue, m.blue);
            if (depth == 4) pixel[format.fourth] = before[0][source.before + x * 4 + format.fourth];
        }
        ASSERT_TRUE(target.Copy() == expected)
            << name << ", " << count << " pixels of " << depth << ", fill " << fill.bytesPerPixel << ", mask "
            << mask.bytesPerPixel << ", mixing " << static_cast<int>(mixing) << (isInPlace ? ", in place" : "")
            << (settings.isStreamed ? ", streamed" : "") << ", red at " << format.red << ", fourth at "
            << format.fourth;
    }

    template <class Formula>
    void TryEffect(const char* name, const Formula& formula) {
        const EffectLoops& loops = LoopsOf(EffectFormulaOf<Formula>::value);
        const bool isMasked = Below(2) == 0;
        Try<false>(name, formula, isMasked ? loops.masked : loops.plain, isMasked ? Mixing::EffectMask : Mixing::None);
    }

    template <class Mode>
    void TryMode(const char* name, std::size_t number) {
        const ModeLoops& loops = LoopsOfMode(number);
        const RowLoop all[] = {loops.plain, loops.withOpacity, loops.withMask};
        const Mixing mixings[] = {Mixing::None, Mixing::Opacity, Mixing::FillMask};
        const int which = Below(3);
        Try<true>(name, Mode(), all[which], mixings[which]);
    }

    const LevelScope level_{GetParam()};
    std::mt19937 random_{kSeed};
};
INSTANTIATE_TEST_SUITE_P(Levels, RandomRows, ::testing::ValuesIn(InstructionLevels()));

TEST_P(RandomRows, AreAsAPlainWalkOverPixels) {
    std::uint8_t tables[3][256];
    for (auto& table : tables) {
        for (std::uint8_t& entry : table) entry = static_cast<std::uint8_t>(Below(256));
    }
    const GreyWeights weights[] = {kRec601, kRec709, {{1, 1, 1}, 3}, {{3, 4, 2}, 9}};
    for (int i = 0; i < kRows && !HasFatalFailure(); ++i) {
        switch (Below(10)) {
            case 0:
                TryEffect("shift", ChannelShift({Below(511) - 255, Below(511) - 255, Below(511) - 255}));
                break;
            case 1:
                TryEffect("contrast", kContrastLines[static_cast<std::size_t>(Below(201))]);
                break;
            case 2:
                TryEffect("grey", Grey(weights[Below(4)]));
                break;
            case 3:
                TryEffect("sepia", SepiaTone(10 + Below(46)));
                break;
            case 4:
                TryEffect("tables", ChannelTables({tables[0], tables[1], tables[2]}));
                break;
            default: {
                std::size_t mode = 0;
                const auto chosen = static_cast<std::size_t>(Below(24));
#define OMBRIX_TRY(name) \
    if (mode++ == chosen) TryMode<name>(#name, mode - 1);
                OMBRIX_TRY(Normal) OMBRIX_BLEND_MODES(OMBRIX_TRY)
#undef OMBRIX_TRY
            }
        }
    }
}

}  // namespace
}  // namespace ombrix::testing
