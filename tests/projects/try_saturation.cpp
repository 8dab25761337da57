// Tries the plug-in that docs/writing-an-effect.md shows: try_saturation libombrix.so libsaturation.so
#include <array>
#include <cstdio>

#include "ombrix/host.h"

namespace {

using namespace ombrix::host;
using Colour = std::array<int, 3>;

constexpr int kWidth = 7, kHeight = 5;

Picture Filled(Host& host, int depth, Colour colour) {
    Picture picture = host.NewPicture(kWidth, kHeight, depth);
    const Picture::Lock pixels(picture);
    for (int y = 0; y < kHeight; ++y) {
        std::uint8_t* pixel = pixels.Row(y).data();
        for (int x = 0; x < kWidth; ++x) {
            if (depth == 32) *pixel++ = static_cast<std::uint8_t>(x * 16 + y);
            for (const int channel : colour) *pixel++ = static_cast<std::uint8_t>(channel);
        }
    }
    return picture;
}

int faults = 0;

void Expect(const char* what, const Picture& picture, int depth, Colour expected) {
    if (!picture || picture.Depth() != depth) {
        std::printf("%s: no picture of %d bits\n", what, depth);
        ++faults;
        return;
    }
    const Picture::Lock pixels(picture);
    for (int y = 0; y < kHeight; ++y) {
        const std::uint8_t* pixel = pixels.Row(y).data();
        for (int x = 0; x < kWidth; ++x, pixel += depth / 8) {
            const std::uint8_t* colour = pixel + (depth == 32);
            if (Colour{colour[0], colour[1], colour[2]} == expected && (depth == 24 || pixel[0] == x * 16 + y))
                continue;
            std::printf("%s, %d bits, at %d,%d: %d %d %d instead of %d %d %d\n", what, depth, x, y, colour[0],
                        colour[1], colour[2], expected[0], expected[1], expected[2]);
            ++faults;
            return;
        }
    }
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 3) return 2;
    Host host(HostOptions{.version = 2024.0, .faults = FaultPolicy::Abort, .withheldServices = {}});
    host.Load(argv[1]);
    host.Load(argv[2]);
    const Colour source{100, 50, 20};  // its grey is 55
    const Colour mask{128, 0, 255};
    for (const int depth : {24, 32}) {
        const Object effect = host.New("SaturationEffect");
        const auto apply = [&](const Object& object) {
            return Picture(object.CallInterface("IGraphicsEffect", "Apply", {Filled(host, depth, source)}).AsObject());
        };
        Expect("100 %", apply(effect), depth, source);
        effect.Set("Percent", 0);
        Expect("0 %", apply(effect), depth, {55, 55, 55});
        effect.Set("Percent", 200);
        Expect("200 %", apply(effect), depth, {145, 45, 0});
        const Picture changed = Filled(host, depth, source);
        effect.CallInterface("IGraphicsEffectInPlace", "ApplyInPlace", {changed});
        Expect("200 %, in place", changed, depth, {145, 45, 0});

        // Through a mask, as an effect of the engine's own with the same result.
        const Object peer = host.New("ColorFilterEffect");
        peer.Set("Red", 45);
        peer.Set("Green", -5);
        peer.Set("Blue", -20);
        for (const int maskDepth : {24, 32}) {
            for (const Object& object : {effect, peer}) object.Set("Mask", Filled(host, maskDepth, mask));
            Expect("200 % through a mask", apply(effect), depth, {121, 44, 19});
            Expect("its peer", apply(peer), depth, {121, 44, 19});
            effect.Set("Mask", Filled(host, maskDepth, {0, 0, 0}));
            Expect("200 % through black", apply(effect), depth, {145, 45, 0});
        }
        effect.Set("Percent", 401);
        if (!effect.CallInterface("IGraphicsEffect", "Apply", {Filled(host, depth, source)}).IsNil() ||
            effect.Get("ErrorCode").AsInteger() != 4) {
            std::printf("401 %% is not refused\n");
            ++faults;
        }
    }
    return faults == 0 ? 0 : 1;
} catch (const Error& error) {
    std::printf("%s\n", error.what());
    return 1;
}
