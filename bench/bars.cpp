#include "bench/bars.h"

#include <algorithm>
#include <initializer_list>

#include "pixels/instruction_level.h"

namespace ombrix::bench {
namespace {

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool IsLuma(std::string_view effect) { return IsOneOf(effect, {"grey NTSC_PAL", "grey ITU_R", "sepia"}); }
bool IsOffset(std::string_view effect) { return IsOneOf(effect, {"colour filter", "brightness", "invert"}); }

/// By traffic: in place, in place with a mask, into a new picture.
using ToneBars = Bar[3];
constexpr ToneBars kOffsetBars = {{0.85, 0.95}, {0.8, 0.95}, {0.95, 0.95}};
constexpr ToneBars kLumaBars = {{0.58, 0.85}, {0.68, 0.85}, {0.82, 0.85}};
constexpr ToneBars kOtherToneBars = {{0.75, 0.95}, {0.78, 0.95}, {0.88, 0.95}};

/// Pixels of three bytes have to be spread to four and put together again.
constexpr Bar kThreeByteBar{0.6, 0.85};

Bar BlendBarAt32Bits(std::string_view mode, bool isMixed) {
    if (IsOneOf(mode, {"hue", "saturation", "colour"})) return {0.18, 0.3};
    if (mode == "luminosity") return {0.28, 0.45};
    if (mode == "vivid light") return {0.58, 0.8};
    if (IsOneOf(mode, {"colour dodge", "colour burn"})) return {0.65, 0.85};
    return {isMixed ? 0.78 : 0.85, 0.95};
}

}  // namespace

bool BarsHold(int tasks) { return tasks == 1 && gInstructionLevel >= InstructionLevel::V4; }

Bar ToneBar(std::string_view effect, Traffic traffic, int bits) {
    if (bits == 24) return kThreeByteBar;
    const ToneBars& bars = IsLuma(effect) ? kLumaBars : IsOffset(effect) ? kOffsetBars : kOtherToneBars;
    return bars[static_cast<std::size_t>(traffic)];
}

Bar ToneBarOnGreys(std::string_view effect, Traffic traffic) {
    if (!IsLuma(effect)) return {};
    return {traffic == Traffic::InPlace ? 0.5 : 0.7, 0.85};
}

Bar BlendBar(std::string_view mode, bool isMixed, int bits) {
    const Bar bar = BlendBarAt32Bits(mode, isMixed);
    if (bits == 32) return bar;
    return {std::min(bar.least, kThreeByteBar.least), std::min(bar.aim, kThreeByteBar.aim)};
}

}  // namespace ombrix::bench
