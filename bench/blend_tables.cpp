#include "bench/blend_tables.h"

#include <string>
#include <vector>

#include "bench/blend_modes.h"
#include "bench/effect_line.h"

namespace ombrix::bench {
namespace {

void Measure(benchmark::State& state, const BlendMode& mode, bool isMixed, int bits, const LineName& name) {
    PictureSet& pictures = Pictures(kPhotoSize, bits);
    const EffectLine line{name, pictures, isMixed ? Traffic::CombineMasked : Traffic::Combine,
                          BlendBar(mode.name, isMixed, bits)};
    CaptureBlend(mode, isMixed ? kMixedOpacity : 1.0, pictures.source, pictures.fill,
                 isMixed ? &pictures.mask : nullptr, pictures.destination,
                 [&](const WorkerCall& call) { MeasureEffectLine(state, line, call); });
}

std::vector<BlendMode> ModesAt(int bits) {
    if (bits == 32) return {BlendModes().begin(), BlendModes().end()};
    std::vector<BlendMode> modes;
    for (const char* name : {"multiply", "overlay", "colour dodge", "vivid light", "hue", "luminosity"}) {
        modes.push_back(FindBlendMode(name));
    }
    return modes;
}

}  // namespace

void AddBlendTables(int bits, std::span<const int> taskCounts) {
    for (const bool isMixed : {false, true}) {
        for (const BlendMode& mode : ModesAt(bits)) {
            for (const int tasks : taskCounts) {
                const LineName name{AtDepth(isMixed ? kBlendMixed : kBlend, bits), std::string(mode.name), tasks};
                AddLine(name, [=](benchmark::State& state) { Measure(state, mode, isMixed, bits, name); });
            }
        }
    }
}

}  // namespace ombrix::bench
