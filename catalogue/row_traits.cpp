#include "catalogue/row_traits.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace ombrix::catalogue {
namespace {

constexpr int kWidth = 32, kHeight = 24;

template <class Change>
void ChangePixels(const host::Picture& picture, Change change) {
    const host::Picture::Lock pixels(picture);
    for (int y = 0; y < picture.Height(); ++y) {
        const auto row = pixels.Row(y);
        for (std::size_t at = 0; at < row.size(); at += static_cast<std::size_t>(picture.Depth() / 8)) {
            change(&row[at]);
        }
    }
}

/// Whether it is the same to change the source or the result.
template <class Change>
bool IsSameWith(host::Host& host, const host::ClassInfo& type, const Prepare& prepare, int depth, Change change) {
    const host::Picture source = TrialPicture(host, kWidth, kHeight, depth, 1);
    const host::Picture before = Tried(host, type, source, prepare);
    if (!before || before.Depth() != depth) return false;
    ChangePixels(before, change);
    ChangePixels(source, change);
    const host::Picture after = Tried(host, type, source, prepare);
    return after && IsSamePicture(before, after);
}

}  // namespace

bool TakesRedForBlue(host::Host& host, const host::ClassInfo& type, const Prepare& prepare) {
    return IsSameWith(host, type, prepare, 24, [](std::uint8_t* pixel) { std::swap(pixel[0], pixel[2]); }) &&
           IsSameWith(host, type, prepare, 32, [](std::uint8_t* pixel) { std::swap(pixel[1], pixel[3]); });
}

bool LandsInPlace(host::Host& host, const host::ClassInfo& type, const Prepare& prepare) {
    const host::Picture source = TrialPicture(host, kWidth, kHeight, 32, 1);
    std::vector<std::uint32_t> memory(std::size_t{kWidth} * kHeight);
    const host::Host::ResultPlace place(host, {memory.data(), std::ptrdiff_t{4} * kWidth, kWidth, kHeight, 32});
    return place.Holds(Tried(host, type, source, prepare));
}

}  // namespace ombrix::catalogue
