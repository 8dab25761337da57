#include "bench/effect_line.h"

#include <algorithm>
#include <string>
#include <vector>

#include "bench/limits/fastest_loops.h"
#include "bench/peers/peers.h"

namespace ombrix::bench {
namespace {

/// The two fastest loops of the trial: timing all of them for each line would take minutes. The fastest comes last,
/// right before the work.
std::vector<LimitLoop> Contenders(const EffectLine& line) {
    std::vector<LimitLoop> loops = LoopsByPace(line.pictures, line.traffic, line.name.tasks);
    loops.resize(std::min<std::size_t>(loops.size(), 2));
    std::reverse(loops.begin(), loops.end());
    return loops;
}

}  // namespace

void MeasureEffectLine(benchmark::State& state, const EffectLine& line, const WorkerCall& call) {
    const PictureSet& pictures = line.pictures;
    const std::vector<LimitLoop> loops = Contenders(line);
    Contest contest{.prepare = [&] { pictures.Prepare(); }, .limits = {}, .work = [&] { call.Run(line.name.tasks); }};
    for (const LimitLoop& loop : loops) contest.limits.push_back(loop.run);
    const Share share = MeasureShare(state, contest);
    ReportShare(state, share, pictures.source.Extent().Megapixels(), BarsHold(line.name.tasks) ? line.bar : Bar{});
    state.counters[kLimitRateCounter] = GigabytesMoved(pictures, line.traffic) / share.limitSeconds;
    state.SetLabel(loops[share.limit].form);
    MeasurePeers(state, line.name, line.pictures, contest, share.limitSeconds);
}

}  // namespace ombrix::bench
