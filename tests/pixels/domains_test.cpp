// At every level, the loops give what the formulas say, over all that these can be given: bytes, pairs of bytes,
// colours.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <vector>

#include "blend/loops.h"
#include "blend/modes.h"
#include "effects/contrast_line.h"
#include "effects/loops.h"
#include "tests/pixels/level_probes.h"
#include "tests/support/effect_cases.h"

namespace ombrix {

#define OMBRIX_DECLARE(level, space)           \
    namespace space {                          \
    extern const testing::LevelProbes kProbes; \
    }
OMBRIX_LEVELS(OMBRIX_DECLARE)
#undef OMBRIX_DECLARE

namespace testing {

const LevelProbes& ProbesOf(InstructionLevel level) {
#define OMBRIX_PROBES(level, space) &space::kProbes,
    static constexpr const LevelProbes* probes[] = {OMBRIX_LEVELS(OMBRIX_PROBES)};
#undef OMBRIX_PROBES
    return *probes[static_cast<int>(level)];
}

namespace {

// Sanitizers look for other faults: there, one row in many.
#if defined(OMBRIX_SLOW_TESTS)
constexpr int kRowStep = 61;
#else
constexpr int kRowStep = 1;
#endif

constexpr PixelFormat kFormat{.red = 1, .green = 2, .blue = 3, .fourth = 0};
constexpr int kFourth = 0x5a;

using Pixels = std::vector<std::uint32_t>;

std::uint32_t PixelOf(Rgb<int> colour) {
    return static_cast<std::uint32_t>(kFourth | colour.red << 8 | colour.green << 16) |
           static_cast<std::uint32_t>(colour.blue) << 24;
}

Rgb<int> ColourOf(std::uint32_t pixel) {
    return {static_cast<int>(pixel >> 8 & 255), static_cast<int>(pixel >> 16 & 255), static_cast<int>(pixel >> 24)};
}

PixelRow RowOf(const Pixels& pixels) { return {reinterpret_cast<const std::uint8_t*>(pixels.data()), 4}; }

class Domains : public ::testing::TestWithParam<InstructionLevel> {
  protected:
    /// What a loop makes of pixels. `fill` and `mask` may be empty.
    const Pixels& Run(RowLoop loop, const void* formula, const Pixels& source, const Pixels& fill = {},
                      const Pixels& mask = {}) {
        settings_.formula = formula;
        result_.resize(source.size());
        Row row{.source = RowOf(source),
                .destination = reinterpret_cast<std::uint8_t*>(result_.data()),
                .count = static_cast<std::int64_t>(source.size())};
        if (!fill.empty()) row.fill = RowOf(fill);
        if (!mask.empty()) row.mask = RowOf(mask);
        loop(row, settings_);
        return result_;
    }

    template <class Expected>
    static void Expect(const Pixels& source, const Pixels& result, Expected expected) {
        for (std::size_t i = 0; i < source.size(); ++i) {
            const std::uint32_t wanted = expected(i);
            if (result[i] != wanted) {
                FAIL() << std::hex << result[i] << " instead of " << wanted << " from " << source[i] << " at " << i;
            }
        }
    }

    const LevelScope level_{GetParam()};
    RowSettings settings_{.format = kFormat};
    Pixels result_;
};

std::string LevelName(const ::testing::TestParamInfo<InstructionLevel>& tested) {
    static constexpr const char* kNames[] = {
#define OMBRIX_NAME(level, space) #level,
        OMBRIX_LEVELS(OMBRIX_NAME)
#undef OMBRIX_NAME
    };
    return kNames[static_cast<int>(tested.param)];
}
INSTANTIATE_TEST_SUITE_P(Levels, Domains, ::testing::ValuesIn(InstructionLevels()), LevelName);

/// Calls `check(colours)` with rows that hold every colour once.
void ForEveryColour(const std::function<void(const Pixels&)>& check) {
    Pixels row(4096);
    for (int y = 0; y < 4096; y += kRowStep) {
        for (int x = 0; x < 4096; ++x) row[x] = static_cast<std::uint32_t>(y << 12 | x) << 8 | kFourth;
        check(row);
        if (::testing::Test::HasFatalFailure()) return;
    }
}

/// All bytes, in other order in each channel.
Pixels AllBytes() {
    Pixels row;
    for (int x = 0; x < 256; ++x) row.push_back(PixelOf({x, (x + 85) & 255, 255 - x}));
    return row;
}

// ---- Effects --------------------------------------------------------------------------------------------------------

std::uint32_t MixedByMask(std::uint32_t source, std::uint32_t effect, std::uint32_t mask) {
    const Rgb<int> s = ColourOf(source);
    const Rgb<int> e = ColourOf(effect);
    const Rgb<int> m = ColourOf(mask);
    if (m.red == 0 && m.green == 0 && m.blue == 0) return effect;
    const auto mix = [](int s, int m, int e) { return (s * m + (255 - m) * e) / 256; };
    return PixelOf({mix(s.red, m.red, e.red), mix(s.green, m.green, e.green), mix(s.blue, m.blue, e.blue)});
}

TEST_P(Domains, EffectsByChannelTakeEveryByteAtEveryValue) {
    const Pixels source = AllBytes();
    Pixels sources;
    Pixels masks;
    for (int m = 0; m < 256; ++m) {
        for (int x = 0; x < 256; ++x) {
            sources.push_back(source[static_cast<std::size_t>(x)]);
            masks.push_back(PixelOf({x % 7 == 0 ? 0 : m, m, x % 3 == 0 ? 0 : m}) & (x % 5 == 0 ? 0xff00ffu : ~0u));
        }
    }
    int trial = 0;
    const auto expect = [&](const auto& formula) {
        SCOPED_TRACE(::testing::Message() << "trial " << trial);
        using Formula = std::remove_cvref_t<decltype(formula)>;
        const EffectLoops& loops = LoopsOf(EffectFormulaOf<Formula>::value);
        Expect(source, Run(loops.plain, &formula, source),
               [&](std::size_t i) { return PixelOf(Apply(formula, ColourOf(source[i]))); });
        if (trial++ % 40 != 0) return;
        Expect(sources, Run(loops.masked, &formula, sources, {}, masks), [&](std::size_t i) {
            return MixedByMask(sources[i], PixelOf(Apply(formula, ColourOf(sources[i]))), masks[i]);
        });
    };
    for (int v = -255; v <= 255; ++v) ASSERT_NO_FATAL_FAILURE(expect(ChannelShift({v, -v, v * v % 511 - 255})));
    for (const ContrastStretch& line : kContrastLines) ASSERT_NO_FATAL_FAILURE(expect(line));
    ASSERT_NO_FATAL_FAILURE(expect(Negative()));
    trial = 0;
    std::uint8_t tables[3][256];
    for (int i = 0; i < 256; ++i) {
        for (int c = 0; c < 3; ++c) tables[c][i] = static_cast<std::uint8_t>(i * (2 * c + 3) + 11 * c);
    }
    ASSERT_NO_FATAL_FAILURE(expect(ChannelTables({tables[0], tables[1], tables[2]})));
    for (int v = 10; v <= 55; ++v) ASSERT_NO_FATAL_FAILURE(expect(SepiaTone(v)));
    trial = 0;
    ASSERT_NO_FATAL_FAILURE(expect(Grey(kRec601)));
}

TEST_P(Domains, GreysOfEveryColour) {
    for (const GreyWeights& weights : {kRec601, kRec709, GreyWeights{{1, 1, 1}, 3}, GreyWeights{{3, 4, 2}, 9}}) {
        const Grey formula(weights);
        const RowLoop loop = LoopsOf(EffectFormula::Grey).plain;
        ForEveryColour([&](const Pixels& colours) {
            Expect(colours, Run(loop, &formula, colours),
                   [&](std::size_t i) { return PixelOf(Apply(formula, ColourOf(colours[i]))); });
        });
    }
}

TEST_P(Domains, SepiaOfEveryColourAtEveryValue) {
    std::vector<std::vector<std::uint32_t>> tones;  // by value, by luma
    for (int value = 10; value <= 55; ++value) {
        const SepiaTone formula(value);
        auto& tone = tones.emplace_back();
        for (int luma = 0; luma < 256; ++luma) {
            const auto shifted = [&](Channels<int> channel) { return formula(luma, channel); };
            tone.push_back(PixelOf({shifted({-1, 0, 0}), shifted({0, -1, 0}), shifted({0, 0, -1})}));
        }
    }
    const RowLoop loop = LoopsOf(EffectFormula::SepiaTone).plain;
    std::vector<int> lumas(4096);
    ForEveryColour([&](const Pixels& colours) {
        for (std::size_t i = 0; i < colours.size(); ++i) lumas[i] = kRec601.Of(ColourOf(colours[i]));
        for (int value = 10; value <= 55; ++value) {
            const SepiaTone formula(value);
            const auto& tone = tones[static_cast<std::size_t>(value - 10)];
            Expect(colours, Run(loop, &formula, colours),
                   [&](std::size_t i) { return tone[static_cast<std::size_t>(lumas[i])]; });
            if (HasFatalFailure()) return;
        }
    });
}

// ---- Modes ----------------------------------------------------------------------------------------------------------

/// Calls `check(formula, loops)` for each mode.
template <class Check>
void ForEachMode(const Check& check) {
    std::size_t mode = 0;
#define OMBRIX_CHECK(name) check(name(), LoopsOfMode(mode++), #name);
    OMBRIX_CHECK(Normal) OMBRIX_BLEND_MODES(OMBRIX_CHECK)
#undef OMBRIX_CHECK
}

TEST_P(Domains, ModesByChannelTakeEveryPairOfBytes) {
    Pixels source;
    Pixels fill;
    Pixels mask;
    for (int f = 0; f < 256; ++f) {
        for (int s = 0; s < 256; ++s) {
            source.push_back(PixelOf({s, 255 - s, (s + 64) & 255}));
            fill.push_back(PixelOf({f, (f + 128) & 255, 255 - f}));
            mask.push_back(PixelOf({(s * 3 + f * 7) & 255, s, f}));
        }
    }
    ForEachMode([&](auto formula, const ModeLoops& loops, const char* name) {
        if constexpr (std::is_same_v<typename decltype(formula)::Kind, ByChannel>) {
            SCOPED_TRACE(name);
            const auto blended = [&](std::size_t i) { return Apply(formula, ColourOf(source[i]), ColourOf(fill[i])); };
            Expect(source, Run(loops.plain, &formula, source, fill),
                   [&](std::size_t i) { return PixelOf(blended(i)); });
            for (const auto& [sourceWeight, fillWeight] : {std::pair{0, 256}, {256, 0}, {179, 76}, {128, 128}}) {
                settings_.sourceWeight = sourceWeight;
                settings_.fillWeight = fillWeight;
                const auto mixed = [&](std::size_t i, int weight) {
                    const Rgb<int> s = ColourOf(source[i]);
                    const Rgb<int> b = blended(i);
                    const auto mix = [&](int s, int b) {
                        const int opaque = (s * settings_.sourceWeight + b * settings_.fillWeight) >> 8;
                        return weight < 0 ? opaque : (s * weight + (255 - weight) * opaque) >> 8;
                    };
                    return PixelOf({mix(s.red, b.red), mix(s.green, b.green), mix(s.blue, b.blue)});
                };
                Expect(source, Run(loops.withOpacity, &formula, source, fill),
                       [&](std::size_t i) { return mixed(i, -1); });
                Expect(source, Run(loops.withMask, &formula, source, fill, mask),
                       [&](std::size_t i) { return mixed(i, ColourOf(mask[i]).red); });
            }
        }
    });
}

TEST_P(Domains, ColoursToHueLightnessSaturationAndBack) {
    const LevelProbes& probes = ProbesOf(GetParam());
    const int none = 0;
    ForEveryColour([&](const Pixels& colours) {
        Expect(colours, Run(probes.toHls, &none, colours), [&](std::size_t i) {
            const Hls<int> hls = ToHls(ColourOf(colours[i]));
            return PixelOf({hls.hue, hls.lightness, hls.saturation});
        });
        Expect(colours, Run(probes.toRgb, &none, colours), [&](std::size_t i) {
            const Rgb<int> hls = ColourOf(colours[i]);
            return PixelOf(ToRgb(Hls<int>{hls.red, hls.green, hls.blue}));
        });
    });
}

TEST_P(Domains, ColourModesOfEverySourceAndEveryFill) {
    std::uint32_t random = 1;
    Pixels others(4096);
    ForEachMode([&](auto formula, const ModeLoops& loops, const char* name) {
        if constexpr (std::is_same_v<typename decltype(formula)::Kind, ByColour>) {
            SCOPED_TRACE(name);
            ForEveryColour([&](const Pixels& colours) {
                for (std::uint32_t& other : others) other = (random = random * 1664525 + 1013904223) | kFourth;
                for (std::uint32_t& other : others) other = (other & ~0xffu) | kFourth;
                const auto expect = [&](const Pixels& source, const Pixels& fill) {
                    Expect(source, Run(loops.plain, &formula, source, fill), [&](std::size_t i) {
                        return PixelOf(Apply(formula, ColourOf(source[i]), ColourOf(fill[i])));
                    });
                };
                expect(colours, others);
                expect(others, colours);
            });
        }
    });
}

// ---- Operations -----------------------------------------------------------------------------------------------------

TEST_P(Domains, OperationsAreTheirPlainForms) { EXPECT_STREQ(ProbesOf(GetParam()).differingOperation(), ""); }

}  // namespace
}  // namespace testing
}  // namespace ombrix
