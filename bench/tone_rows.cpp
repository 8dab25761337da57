#include "bench/tone_rows.h"

#include <string>

#include "bench/tone_works.h"
#include "bench/work_row.h"
#include "engine/instruction_level.h"

namespace ombrix::bench {
namespace {

/// How an effect is called: the group of its row.
struct Kind {
    const char* group;
    int bits;
    bool inPlace;
    bool masked;
    Limit (*limit)(std::string_view work);
};

bool IsGrey(std::string_view work) { return work.starts_with("grey"); }
bool IsWeightedSum(std::string_view work) { return work == "grey NTSC_PAL" || work == "grey ITU_R"; }

Limit InPlaceLimit(std::string_view work) {
    if (work == "sepia") return {0.65, 1.2};
    if (IsGrey(work)) return {0.9, 1.6};
    if (work == "contrast" || work == "map") return {1.2, 1.8};
    return {1.5, 2.0};
}

Limit IntoNewLimit(std::string_view work) { return {work == "sepia" ? 0.55 : 0.85, 1.1}; }

Limit MaskedLimit(std::string_view work) { return {work == "sepia" || IsWeightedSum(work) ? 0.4 : 0.5, 0.65}; }

/// Pixels of three bytes take a walk that compilers make no vector code of.
Limit ThreeByteLimit(std::string_view work) { return InPlaceLimit(work).Scaled(1.0 / 3); }

constexpr Kind kKinds[] = {
    {kInPlace, 32, true, false, InPlaceLimit},
    {kIntoNew, 32, false, false, IntoNewLimit},
    {kInPlaceMasked, 32, true, true, MaskedLimit},
    {"in place at 24 bits", 24, true, false, ThreeByteLimit},
};

void Measure(benchmark::State& state, const Kind& kind, const ToneWork& work, const RowName& name) {
    PictureSet& pictures = Pictures(kPhotoSize, kind.bits);
    // Without vector code nothing is promised.
    const Limit limit = gInstructionLevel == InstructionLevel::Baseline ? Limit{} : kind.limit(work.name);
    const WorkRow row{name, pictures, kind.inPlace, ForTasks(limit, name.tasks)};
    CaptureTone(work, pictures.source, kind.inPlace ? nullptr : &pictures.destination,
                kind.masked ? &pictures.mask : nullptr,
                [&](GenericMPParams* params, RowWorker worker) { MeasureRowWork(state, row, params, worker); });
}

}  // namespace

void AddToneRows(std::span<const int> taskCounts) {
    for (const Kind& kind : kKinds) {
        for (const ToneWork& work : ToneWorks()) {
            for (const int tasks : taskCounts) {
                const RowName name{kind.group, std::string(work.name), tasks};
                AddRow(name, [&kind, &work, name](auto& state) { Measure(state, kind, work, name); });
            }
        }
    }
}

}  // namespace ombrix::bench
