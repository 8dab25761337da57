#include "bench/blend_works.h"

#include <algorithm>
#include <utility>

#include "bench/bench_host.h"

namespace ombrix::bench {
namespace {

constexpr BlendWork kWorks[] = {
    {"normal", 0},       {"multiply", 1},     {"screen", 2},        {"overlay", 3},      {"darken", 4},
    {"lighten", 5},      {"colour dodge", 6}, {"colour burn", 7},   {"soft light", 8},   {"hard light", 9},
    {"difference", 10},  {"exclusion", 11},   {"hue", 12},          {"saturation", 13},  {"colour", 14},
    {"luminosity", 15},  {"pin light", 16},   {"sharp light", 17},  {"vivid light", 18}, {"linear light", 19},
    {"power light", 20}, {"linear burn", 21}, {"linear dodge", 22}, {"add", 23},
};

}  // namespace

std::span<const BlendWork> BlendWorks() { return kWorks; }

const BlendWork& FindBlendWork(std::string_view name) {
    return *std::find_if(std::begin(kWorks), std::end(kWorks), [name](const auto& work) { return work.name == name; });
}

void CaptureBlend(const BlendWork& work, double opacity, BenchPicture& source, BenchPicture& fill,
                  BenchPicture* fillMask, BenchPicture& destination, RowWorkReceiver receiver) {
    SetNewPicture(destination);
    Effect effect("BlendEffect");
    effect.Set("BlendMode", work.mode);
    effect.Set("Opacity", opacity);
    effect.Set("FillPicture", fill.Handle());
    if (fillMask) effect.Set("FillMask", fillMask->Handle());
    const RowWorkCapture capture(effect.Base(), std::move(receiver));
    effect.Apply(source);
}

}  // namespace ombrix::bench
