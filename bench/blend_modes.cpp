#include "bench/blend_modes.h"

#include <algorithm>
#include <utility>

#include "bench/bench_host.h"

namespace ombrix::bench {
namespace {

constexpr BlendMode kModes[] = {
    {"normal", 0},       {"multiply", 1},     {"screen", 2},        {"overlay", 3},      {"darken", 4},
    {"lighten", 5},      {"colour dodge", 6}, {"colour burn", 7},   {"soft light", 8},   {"hard light", 9},
    {"difference", 10},  {"exclusion", 11},   {"hue", 12},          {"saturation", 13},  {"colour", 14},
    {"luminosity", 15},  {"pin light", 16},   {"sharp light", 17},  {"vivid light", 18}, {"linear light", 19},
    {"power light", 20}, {"linear burn", 21}, {"linear dodge", 22}, {"add", 23},
};

}  // namespace

std::span<const BlendMode> BlendModes() { return kModes; }

const BlendMode& FindBlendMode(std::string_view name) {
    return *std::find_if(std::begin(kModes), std::end(kModes), [name](const auto& mode) { return mode.name == name; });
}

void CaptureBlend(const BlendMode& mode, double opacity, BenchPicture& source, BenchPicture& fill,
                  BenchPicture* fillMask, BenchPicture& destination, WorkerCallReceiver receiver) {
    SetNewPicture(destination);
    Effect object("BlendEffect");
    object.Set("BlendMode", mode.number);
    object.Set("Opacity", opacity);
    object.Set("FillPicture", fill.Handle());
    if (fillMask) object.Set("FillMask", fillMask->Handle());
    const WorkerCallCapture capture(object.Base(), std::move(receiver));
    object.Apply(source);
}

}  // namespace ombrix::bench
