// What the tone and colour effects do to colours: every value that they take, every byte of source and mask.
#include <algorithm>
#include <functional>

#include "tests/effects/effects_test.h"

namespace ombrix::testing {
namespace {

/// An effect with one set of arguments, and what it makes of a colour, in the plainest form.
struct Trial {
    std::vector<host::Argument> values;
    std::function<Colour(Colour)> expected;
};

struct EffectTrials {
    const char* className;
    std::function<std::vector<Trial>()> trials;
};

template <class Change>
Colour EachChannel(Colour colour, Change change) {
    return {change(colour[0]), change(colour[1]), change(colour[2])};
}

int Shifted(int source, int offset) { return std::clamp(source + offset, 0, 255); }

Colour Sepia(Colour s, int value) {
    const double luma = static_cast<int>((s[0] * 0.299 + s[1] * 0.587) + s[2] * 0.114);
    const auto cut = [](double sum) {
        const auto tone = static_cast<float>(sum);
        return tone < 0.0f ? 0 : tone > 255.0f ? 255 : static_cast<int>(tone);
    };
    return {cut(luma + 0.956 * value), cut(luma - 0.272 * value), cut(luma - 1.105 * value)};
}

Colour WeightedGrey(Colour s, double red, double green, double blue) {
    double sum = s[0] * red;
    sum = s[1] * green + sum;
    sum = s[2] * blue + sum;
    const int grey = static_cast<int>(sum);
    return {grey, grey, grey};
}

Colour Grey(Colour s, std::int64_t type) {
    if (type == 0) return WeightedGrey(s, 0.299, 0.587, 0.114);
    if (type == 1) return WeightedGrey(s, 0.2125, 0.7154, 0.0721);
    const int grey = type == 2 ? (s[0] + s[1] + s[2]) / 3 : (3 * s[0] + 4 * s[1] + 2 * s[2]) / 9;
    return {grey, grey, grey};
}

std::vector<Trial> TrialsOver(int first, int last, Colour (*expected)(Colour, int)) {
    std::vector<Trial> trials;
    for (int value = first; value <= last; ++value) {
        trials.push_back({{value}, [=](Colour colour) { return expected(colour, value); }});
    }
    return trials;
}

std::vector<Trial> ColorFilterTrials() {
    std::vector<Trial> trials;
    for (int value = -255; value <= 255; ++value) {
        const int green = -value;
        const int blue = (value * 7 + 13) % 256;
        trials.push_back({{value, green, blue}, [=](Colour c) {
                              return Colour{Shifted(c[0], value), Shifted(c[1], green), Shifted(c[2], blue)};
                          }});
    }
    return trials;
}

std::vector<Trial> BrightnessTrials() {
    return TrialsOver(-255, 255, [](Colour colour, int value) {
        return EachChannel(colour, [value](int s) { return Shifted(s, value); });
    });
}

std::vector<Trial> ContrastTrials() {
    return TrialsOver(-100, 100, [](Colour colour, int value) {
        const double root = (value + 100.0) / 100.0;
        return EachChannel(colour, [root](int s) {
            const double x = (s - 128) * (root * root) + 128.0;
            return x < 0.0 ? 0 : static_cast<int>(x < 255.0 ? x : 255.0);
        });
    });
}

std::vector<Trial> SepiaTrials() { return TrialsOver(10, 55, Sepia); }

std::vector<Trial> GrayscaleTrials() {
    std::vector<Trial> trials;
    for (const std::int64_t type : {std::int64_t{0}, std::int64_t{1}, std::int64_t{2}, std::int64_t{3}, std::int64_t{4},
                                    std::int64_t{99}, std::int64_t{-1}, std::int64_t{1} << 32}) {
        trials.push_back({{type}, [type](Colour colour) { return Grey(colour, type); }});
    }
    return trials;
}

std::vector<Trial> InvertTrials() {
    // Eight times the same, for the sake of the masks.
    return std::vector<Trial>(8,
                              {{}, [](Colour colour) { return EachChannel(colour, [](int s) { return 255 - s; }); }});
}

const EffectTrials kEffects[] = {
    {"ColorFilterEffect", ColorFilterTrials}, {"BrightnessEffect", BrightnessTrials},
    {"ContrastEffect", ContrastTrials},       {"SepiaEffect", SepiaTrials},
    {"GrayscaleEffect", GrayscaleTrials},     {"InvertEffect", InvertTrials},
};

Colour Mixed(Colour source, Colour effect, Colour mask) {
    if (mask == Colour{0, 0, 0}) return effect;
    Colour mixed;
    for (int i = 0; i < 3; ++i) mixed[i] = (source[i] * mask[i] + (255 - mask[i]) * effect[i]) / 256;
    return mixed;
}

class Values : public Effects {
  protected:
    /// Compares a picture with what is expected at every place, and the fourth bytes with those of Painted.
    template <class Expected>
    static void Expect(const Picture& picture, Expected expected) {
        ASSERT_TRUE(picture);
        const Picture::Lock pixels(picture);
        for (int y = 0; y < picture.Height(); ++y) {
            const std::uint8_t* pixel = pixels.Row(y).data();
            for (int x = 0; x < picture.Width(); ++x, pixel += 4) {
                const Colour colour{pixel[1], pixel[2], pixel[3]};
                const Colour wanted = expected(x, y);
                if (colour != wanted || pixel[0] != ((x + y) & 255)) {
                    FAIL() << ::testing::PrintToString(colour) << " instead of " << ::testing::PrintToString(wanted)
                           << " beside " << int{pixel[0]} << " at " << x << "," << y;
                }
            }
        }
    }

    static std::vector<host::Argument> Arguments(const Picture& source, const Trial& trial, const Picture& mask) {
        std::vector<host::Argument> arguments{source};
        arguments.insert(arguments.end(), trial.values.begin(), trial.values.end());
        arguments.push_back(mask);
        return arguments;
    }
};

TEST_F(Values, EveryValueOverEveryByteOfSourceAndMask) {
    // Columns are the source's bytes and rows the mask's: eight trials in a row see all 256 of these between them. Some
    // mask pixels are black but for one channel.
    const auto sourceAt = [](int x, int y) {
        return y % 4 == 3 ? Colour{x, x, x} : Colour{x, 255 - x, (x * 3 + y) & 255};
    };
    for (const EffectTrials& effect : kEffects) {
        const Object object = host_.New(effect.className);
        const std::vector<Trial> trials = effect.trials();
        for (std::size_t i = 0; i < trials.size(); ++i) {
            SCOPED_TRACE(::testing::Message() << effect.className << ", trial " << i);
            const Trial& trial = trials[i];
            const auto maskAt = [i](int x, int y) {
                const int m = y * 8 + static_cast<int>(i % 8);
                return y % 5 == 4 ? Colour{x % 3 == 0 ? m : 0, x % 3 == 1 ? m : 0, x % 3 == 2 ? m : 0}
                                  : Colour{m, m, m};
            };
            const auto plain = [&](int x, int y) { return trial.expected(sourceAt(x, y)); };
            const auto mixed = [&](int x, int y) { return Mixed(sourceAt(x, y), plain(x, y), maskAt(x, y)); };
            const Picture mask = Painted(256, 32, maskAt);
            object.Set("MultiprocessingHint", static_cast<std::int64_t>(i % 8 + 1));

            const Picture source = Painted(256, 32, sourceAt);
            for (const bool masked : {false, true}) {
                const auto arguments = Arguments(source, trial, masked ? mask : Picture());
                const Picture result(object.Call("Apply", arguments).AsObject());
                ASSERT_NO_FATAL_FAILURE(masked ? Expect(result, mixed) : Expect(result, plain));
                const Picture changed = Painted(256, 32, sourceAt);
                object.Call("ApplyInPlace", Arguments(changed, trial, masked ? mask : Picture()));
                ASSERT_NO_FATAL_FAILURE(masked ? Expect(changed, mixed) : Expect(changed, plain));
            }
        }
    }
}

TEST_F(Values, WeightedSumsOverEveryColour) {
#if defined(OMBRIX_SLOW_TESTS)
    GTEST_SKIP() << "the release build compares all colours; sanitizers look for other faults";
#endif
    const auto colourAt = [](int x, int y) { return Colour{x & 255, y & 255, x >> 8 | y >> 8 << 4}; };
    const Picture colours = Painted(4096, 4096, colourAt);
    const Object grayscale = host_.New("GrayscaleEffect");
    for (const int type : {0, 1}) {
        const Picture result(grayscale.Call("Apply", {colours, type}).AsObject());
        ASSERT_NO_FATAL_FAILURE(Expect(result, [&](int x, int y) { return Grey(colourAt(x, y), type); }));
    }
    const Object sepia = host_.New("SepiaEffect");
    for (const int value : {10, 33, 55}) {
        const Picture result(sepia.Call("Apply", {colours, value}).AsObject());
        ASSERT_NO_FATAL_FAILURE(Expect(result, [&](int x, int y) { return Sepia(colourAt(x, y), value); }));
    }
}

TEST_F(Values, KnownColours) {
    const struct {
        const char* className;
        std::vector<host::Argument> values;
        Colour source;
        Colour result;
    } known[] = {
        {"ColorFilterEffect", {255, -255, 0}, {10, 200, 30}, {255, 0, 30}},
        {"BrightnessEffect", {40}, {10, 230, 128}, {50, 255, 168}},
        {"BrightnessEffect", {-40}, {10, 230, 128}, {0, 190, 88}},
        {"BrightnessEffect", {255}, {0, 1, 254}, {255, 255, 255}},
        {"ContrastEffect", {-100}, {0, 77, 255}, {128, 128, 128}},
        {"ContrastEffect", {100}, {100, 96, 160}, {16, 0, 255}},
        {"ContrastEffect", {100}, {129, 129, 129}, {132, 132, 132}},
        {"ContrastEffect", {-50}, {0, 255, 200}, {96, 159, 146}},
        {"ContrastEffect", {1}, {127, 129, 128}, {126, 129, 128}},
        {"SepiaEffect", {10}, {255, 255, 255}, {255, 252, 243}},
        {"SepiaEffect", {55}, {255, 255, 255}, {255, 240, 194}},
        {"SepiaEffect", {20}, {100, 100, 100}, {119, 94, 77}},
        {"SepiaEffect", {55}, {0, 0, 0}, {52, 0, 0}},
        {"SepiaEffect", {10}, {128, 128, 128}, {136, 124, 115}},
        {"SepiaEffect", {20}, {200, 150, 100}, {178, 153, 136}},
        {"GrayscaleEffect", {0}, {200, 100, 50}, {124, 124, 124}},
        {"GrayscaleEffect", {1}, {200, 100, 50}, {117, 117, 117}},
        {"GrayscaleEffect", {2}, {200, 100, 50}, {116, 116, 116}},
        {"GrayscaleEffect", {3}, {200, 100, 50}, {122, 122, 122}},
        {"GrayscaleEffect", {0}, {128, 128, 128}, {127, 127, 127}},
        {"GrayscaleEffect", {1}, {43, 43, 43}, {42, 42, 42}},
        {"GrayscaleEffect", {0}, {0, 255, 0}, {149, 149, 149}},
        {"GrayscaleEffect", {1}, {0, 255, 0}, {182, 182, 182}},
        {"InvertEffect", {}, {0, 100, 255}, {255, 155, 0}},
    };
    for (const auto& [className, values, source, result] : known) {
        std::vector<host::Argument> arguments{Single(source)};
        arguments.insert(arguments.end(), values.begin(), values.end());
        arguments.push_back(nullptr);
        const Picture picture(host_.New(className).Call("Apply", arguments).AsObject());
        EXPECT_EQ(At(picture), result) << className << " of " << ::testing::PrintToString(source);
    }
}

}  // namespace
}  // namespace ombrix::testing
