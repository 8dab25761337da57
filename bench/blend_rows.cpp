#include "bench/blend_rows.h"

#include <algorithm>
#include <string>

#include "bench/blend_works.h"
#include "bench/work_row.h"
#include "engine/instruction_level.h"

namespace ombrix::bench {
namespace {

struct Kind {
    const char* group;
    double opacity;
    bool masked;
    Limit (*limit)(std::string_view mode);
};

bool IsOneOf(std::string_view mode, std::initializer_list<std::string_view> modes) {
    return std::find(modes.begin(), modes.end(), mode) != modes.end();
}

/// The modes that work on a colour as a whole, by way of another colour space.
bool HasColourSpace(std::string_view mode) { return IsOneOf(mode, {"hue", "saturation", "colour", "luminosity"}); }

/// The modes that divide by a channel or multiply three values.
bool IsLaborious(std::string_view mode) {
    return IsOneOf(mode, {"colour dodge", "colour burn", "soft light", "sharp light", "power light", "vivid light"});
}

constexpr Limit kColourSpaceLimit{0.09, 0.25};

Limit PlainLimit(std::string_view mode) {
    if (HasColourSpace(mode)) return kColourSpaceLimit;
    return IsLaborious(mode) ? Limit{0.5, 0.8} : Limit{0.6, 0.85};
}

Limit MixedLimit(std::string_view mode) { return HasColourSpace(mode) ? kColourSpaceLimit : Limit{0.35, 0.5}; }

constexpr Kind kKinds[] = {
    {kBlend, 1.0, false, PlainLimit},
    {kBlendMixed, kMixedOpacity, true, MixedLimit},
};

/// Integer work halves with the width of the vectors; without vector code nothing is promised.
Limit AtLevel(Limit limit, std::string_view mode) {
    if (gInstructionLevel == InstructionLevel::Baseline) return {};
    if (gInstructionLevel == InstructionLevel::V3 && !HasColourSpace(mode)) return limit.Scaled(0.5);
    return limit;
}

void Measure(benchmark::State& state, const Kind& kind, const BlendWork& work, const RowName& name) {
    PictureSet& pictures = Pictures(kPhotoSize, 32);
    const Limit limit = ForTasks(AtLevel(kind.limit(work.name), work.name), name.tasks);
    const WorkRow row{name, pictures, /*inPlace=*/false, limit};
    CaptureBlend(work, kind.opacity, pictures.source, pictures.fill, kind.masked ? &pictures.mask : nullptr,
                 pictures.destination,
                 [&](GenericMPParams* params, RowWorker worker) { MeasureRowWork(state, row, params, worker); });
}

}  // namespace

void AddBlendRows(std::span<const int> taskCounts) {
    for (const Kind& kind : kKinds) {
        for (const BlendWork& work : BlendWorks()) {
            for (const int tasks : taskCounts) {
                const RowName name{kind.group, std::string(work.name), tasks};
                AddRow(name, [&kind, &work, name](auto& state) { Measure(state, kind, work, name); });
            }
        }
    }
}

}  // namespace ombrix::bench
