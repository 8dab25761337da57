// Prints a checksum of each result: every effect at some values and every blend mode, for each combination of depths,
// mask, opacity and kind of store. All processors, levels and compilers print the same. A level whose result is not
// that of the baseline has a line of its own.
#include <cinttypes>
#include <cstdio>
#include <functional>

#include "blend/blend_procs.h"
#include "effects/map_effect.h"
#include "tests/support/effect_cases.h"
#include "tests/support/fake_host.h"

namespace ombrix::testing {
namespace {

constexpr int kWidth = 259;
constexpr int kKinds = 8;
constexpr int kHeight = 4 * kKinds * kKinds;

std::uint32_t Noise(int x, int y, int seed) {
    auto bits = static_cast<std::uint32_t>((x * 73 + y * 1051 + seed) * 2654435761u);
    bits ^= bits >> 15;
    bits *= 2246822519u;
    return bits ^ bits >> 13;
}

/// Four channels of the content that pictures have.
std::uint32_t ContentOf(int kind, int x, int y, int seed) {
    const auto grey = static_cast<std::uint32_t>(x & 255) * 0x01010101;
    const std::uint32_t noise = Noise(x, y, seed);
    switch (kind) {
        case 0:
            return 0;
        case 1:
            return ~0u;
        case 2:
            return 0x3264c811;  // one colour
        case 3:
            return grey;  // greys
        case 4:
            return grey ^ 0x00ff8000;  // gradients
        case 5:
            return grey ^ (noise & 0x01030103);  // nearly greys
        case 6:
            return (noise & 0x01010101) * 255;  // black, white and the colours of one or two channels
        default:
            return noise;
    }
}

/// Every kind of a source meets every kind of a fill and of a mask: their kinds run at different paces.
void Paint(FakePicture& picture, const std::function<int(int y)>& kindOf, int seed) {
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const std::uint32_t content = ContentOf(kindOf(y), x, y, seed);
            for (int byte = 0; byte < picture.bits / 8; ++byte) {
                picture.Pixel(x, y)[byte] = static_cast<std::uint8_t>(content >> 8 * byte);
            }
        }
    }
}

/// FNV-1a.
std::uint64_t ChecksumOf(const FakePicture& picture) {
    std::uint64_t checksum = 0xcbf29ce484222325;
    for (std::size_t i = 0; i < picture.bytes->size(); ++i) {
        checksum = (checksum ^ picture.bytes->data()[i]) * 0x100000001b3;
    }
    return checksum;
}

class Digest {
  public:
    Digest() {
        host_.Start();
        for (const int bits : {24, 32}) {
            FakePicture* source = sources_.emplace_back(host_.NewPicture("source", kWidth, kHeight, bits));
            FakePicture* fill = fills_.emplace_back(host_.NewPicture("fill", kWidth, kHeight, bits));
            FakePicture* mask = masks_.emplace_back(host_.NewPicture("mask", kWidth, kHeight, bits));
            Paint(
                *source, [](int y) { return y % kKinds; }, 1);
            Paint(
                *fill, [](int y) { return y / kKinds % kKinds; }, 2);
            Paint(
                *mask, [](int y) { return (y + y / kKinds * 3) % kKinds; }, 3);
        }
        kept_ = host_.pictures.size();
    }

    void Effects() {
        const EffectCase cases[] = {
            {"ColorFilterEffect", {40, -255, 7}},
            {"ColorFilterEffect", {-1, 200, 0}},
            {"BrightnessEffect", {-90}},
            {"BrightnessEffect", {255}},
            {"ContrastEffect", {-100}},
            {"ContrastEffect", {-37}},
            {"ContrastEffect", {37}},
            {"ContrastEffect", {100}},
            {"SepiaEffect", {10}},
            {"SepiaEffect", {33}},
            {"SepiaEffect", {55}},
            {"InvertEffect", {}},
            {"GrayscaleEffect", {0}},
            {"GrayscaleEffect", {1}},
            {"GrayscaleEffect", {2}},
            {"GrayscaleEffect", {3}},
        };
        for (const EffectCase& tested : cases) {
            FakeEffect effect(tested.className);
            std::string name = tested.className;
            for (const std::int64_t value : tested.values) name += " " + std::to_string(value);
            ForEachMask(name, [&](FakePicture* source, FakePicture* mask) {
                return Apply(effect, tested.values, source, mask);
            });
        }
        std::uint8_t tables[3][256];
        for (int i = 0; i < 256; ++i) {
            for (int c = 0; c < 3; ++c) tables[c][i] = static_cast<std::uint8_t>(i * (2 * c + 3) + 11 * c);
        }
        FakeEffect base("InvertEffect");
        ForEachMask("map", [&](FakePicture* source, FakePicture* mask) {
            MapParams params{};
            params.redTable = tables[0];
            params.greenTable = tables[1];
            params.blueTable = tables[2];
            auto* result = ApplyMapEffect(&base.Base(), source->Handle(), mask ? mask->Handle() : nullptr, &params);
            return reinterpret_cast<FakePicture*>(result);
        });
    }

    void Modes() {
        FakeEffect effect("BlendEffect");
        const REALpropertyDefinition& property = host_.classes.at("BlendEffect")->properties[0];
        using Handle = REALobjectStruct*;
        const auto setMode = reinterpret_cast<void (*)(Handle, std::int64_t, std::int64_t)>(property.setter.function);
        const auto apply = effect.Method<Handle(Handle, Handle, Handle, double, Handle, Handle, Handle)>(0);
        for (std::size_t mode = 0; mode <= kBlendProcCount; ++mode) {
            setMode(effect.Handle(), 0, static_cast<std::int64_t>(mode));
            for (FakePicture* fill : fills_) {
                for (const double opacity : {1.0, 0.3}) {
                    const std::string name = "mode " + std::to_string(mode) + " fill " + std::to_string(fill->bits) +
                                             " opacity " + (opacity < 1.0 ? "0.3" : "1");
                    ForEachMask(name, [&](FakePicture* source, FakePicture* mask) {
                        return reinterpret_cast<FakePicture*>(apply(effect.Handle(), source->Handle(), fill->Handle(),
                                                                    opacity, mask ? mask->Handle() : nullptr, nullptr,
                                                                    nullptr));
                    });
                }
            }
        }
    }

    bool IsWhole() const { return isWhole_; }

  private:
    /// `apply(source, mask)` gives the result, or null.
    void ForEachMask(const std::string& name, const std::function<FakePicture*(FakePicture*, FakePicture*)>& apply) {
        for (FakePicture* source : sources_) {
            for (FakePicture* mask : {static_cast<FakePicture*>(nullptr), masks_[0], masks_[1]}) {
                for (const bool streams : {false, true}) {
                    const std::string combination = name + " source " + std::to_string(source->bits) + " mask " +
                                                    std::to_string(mask ? mask->bits : 0) +
                                                    (streams ? " streamed" : "");
                    Print(combination, streams, [&] { return apply(source, mask); });
                }
            }
        }
    }

    void Print(const std::string& combination, bool streams, const std::function<FakePicture*()>& apply) {
        const StreamingScope streaming(streams);
        std::uint64_t baseline = 0;
        for (const InstructionLevel level : InstructionLevels()) {
            const LevelScope scope(level);
            const FakePicture* result = apply();
            isWhole_ = isWhole_ && result;
            const std::uint64_t checksum = result ? ChecksumOf(*result) : 0;
            if (level == InstructionLevel::Baseline) {
                baseline = checksum;
                std::printf("%s: %016" PRIx64 "\n", combination.c_str(), checksum);
            } else if (checksum != baseline) {
                std::printf("%s: %016" PRIx64 " at level %d\n", combination.c_str(), checksum, static_cast<int>(level));
            }
            host_.pictures.resize(kept_);
        }
    }

    FakeHost host_;
    std::vector<FakePicture*> sources_, fills_, masks_;  ///< of 24 and of 32 bits
    std::size_t kept_ = 0;                               ///< pictures that are no results
    bool isWhole_ = true;                                ///< every call gave a result
};

}  // namespace
}  // namespace ombrix::testing

int main() {
    ombrix::testing::Digest digest;
    digest.Effects();
    digest.Modes();
    return digest.IsWhole() ? 0 : 1;
}
