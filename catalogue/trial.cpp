#include "catalogue/trial.h"

#include <cstring>

#include "catalogue/error_code.h"

namespace ombrix::catalogue {

host::Picture TrialPicture(host::Host& host, std::int64_t width, std::int64_t height, int depth, std::uint32_t seed) {
    const host::Picture picture = host.NewPicture(width, height, depth);
    const host::Picture::Lock pixels(picture);
    for (int y = 0; y < height; ++y) {
        for (std::uint8_t& byte : pixels.Row(y)) {
            seed = seed * 1664525 + 1013904223;  // a linear congruential generator, by Knuth
            const std::uint32_t kind = seed >> 16 & 7;
            byte = kind == 0 ? 0 : kind == 1 ? 255 : static_cast<std::uint8_t>(seed >> 24);
        }
    }
    return picture;
}

host::Picture Tried(host::Host& host, const host::ClassInfo& type, const host::Picture& source,
                    const Prepare& prepare) {
    const host::Object object = host.New(type.name);
    prepare(object);
    const host::Value result = object.CallInterface(host::kEffectInterface, "Apply", {host::Object(source)});
    if (result.IsNil() || ReportsError(host, object)) return {};
    return host::Picture(result.AsObject());
}

bool IsSamePicture(const host::Picture& a, const host::Picture& b) {
    if (a.Width() != b.Width() || a.Height() != b.Height() || a.Depth() != b.Depth()) return false;
    const host::Picture::Lock first(a);
    const host::Picture::Lock second(b);
    for (int y = 0; y < a.Height(); ++y) {
        if (std::memcmp(first.Row(y).data(), second.Row(y).data(), first.Row(y).size()) != 0) return false;
    }
    return true;
}

}  // namespace ombrix::catalogue
