#include "bench/limit_table.h"

#include <string>
#include <vector>

#include "bench/limits/fastest_loops.h"
#include "bench/table_line.h"

namespace ombrix::bench {
namespace {

struct NamedTraffic {
    const char* name;
    Traffic traffic;
};

constexpr NamedTraffic kTraffics[] = {
    {kInPlace, Traffic::InPlace}, {kIntoNew, Traffic::IntoNew},          {kInPlaceMasked, Traffic::InPlaceMasked},
    {kBlend, Traffic::Combine},   {kBlendMixed, Traffic::CombineMasked},
};

void Measure(benchmark::State& state, Traffic traffic, int bits, int tasks) {
    const PictureSet& pictures = Pictures(kPhotoSize, bits);
    std::vector<LimitLoop> loops;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        loops = LoopsByPace(pictures, traffic, tasks);
        const double seconds = GigabytesMoved(pictures, traffic) / loops.front().gigabytesPerSecond;
        state.SetIterationTime(seconds);
        state.counters[kPixelRateCounter] = pictures.source.Extent().Megapixels() / seconds;
    }
    state.counters[kLimitRateCounter] = loops.front().gigabytesPerSecond;
    state.SetLabel(loops.front().form);
    for (std::size_t i = 1; i < loops.size(); ++i) {
        state.counters[kOtherCounter + loops[i].form] = loops[i].gigabytesPerSecond;
    }
}

}  // namespace

void AddLimitTable(std::span<const int> taskCounts) {
    for (const int bits : {32, 24}) {
        for (const auto& [name, traffic] : kTraffics) {
            for (const int tasks : taskCounts) {
                AddLine(
                    {AtDepth("limit", bits), name, tasks},
                    [=, traffic = traffic](benchmark::State& state) { Measure(state, traffic, bits, tasks); },
                    /*iterations=*/1);
            }
        }
    }
}

}  // namespace ombrix::bench
