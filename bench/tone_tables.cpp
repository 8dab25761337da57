#include "bench/tone_tables.h"

#include <string>

#include "bench/effect_line.h"
#include "bench/tone_effects.h"

namespace ombrix::bench {
namespace {

struct ToneTable {
    const char* name;
    Traffic traffic;
};

constexpr ToneTable kTables[] = {
    {kInPlace, Traffic::InPlace},
    {kIntoNew, Traffic::IntoNew},
    {kInPlaceMasked, Traffic::InPlaceMasked},
};

void Measure(benchmark::State& state, const ToneEffect& effect, Traffic traffic, int bits, const LineName& name) {
    PictureSet& pictures = Pictures(kPhotoSize, bits);
    const EffectLine line{name, pictures, traffic, ToneBar(effect.name, traffic, bits)};
    CaptureTone(effect, pictures.source, traffic == Traffic::IntoNew ? &pictures.destination : nullptr,
                traffic == Traffic::InPlaceMasked ? &pictures.mask : nullptr,
                [&](const WorkerCall& call) { MeasureEffectLine(state, line, call); });
}

}  // namespace

void AddToneTables(int bits, std::span<const int> taskCounts) {
    for (const ToneTable& table : kTables) {
        for (const ToneEffect& effect : ToneEffects()) {
            for (const int tasks : taskCounts) {
                const LineName name{AtDepth(table.name, bits), std::string(effect.name), tasks};
                AddLine(name, [=, &effect, traffic = table.traffic](benchmark::State& state) {
                    Measure(state, effect, traffic, bits, name);
                });
            }
        }
    }
}

}  // namespace ombrix::bench
