#include "bench/limits/fastest_loops.h"

#include <algorithm>
#include <map>
#include <span>
#include <stdexcept>
#include <tuple>

#include "bench/task_bands.h"
#include "bench/timing.h"
#include "pixels/instruction_level.h"

namespace ombrix::bench {
namespace {

constexpr int kTrialRounds = 7;

std::span<const LoopForm> Forms() {
#if defined(__x86_64__)
    const InstructionLevel best = BestInstructionLevel();
    if (best >= InstructionLevel::V4) return v4::kForms;
    if (best >= InstructionLevel::V3) return v3::kForms;
#endif
    return baseline::kForms;
}

/// The pictures that are read, the target first where work is in place.
std::vector<const BenchPicture*> Sources(const PictureSet& pictures, Traffic traffic) {
    switch (traffic) {
        case Traffic::InPlace:
        case Traffic::IntoNew:
            return {&pictures.source};
        case Traffic::InPlaceMasked:
            return {&pictures.source, &pictures.mask};
        case Traffic::Combine:
            return {&pictures.source, &pictures.fill};
        case Traffic::CombineMasked:
            return {&pictures.source, &pictures.fill, &pictures.mask};
    }
    throw std::logic_error("unknown traffic");
}

MovedBytes Whole(const PictureSet& pictures, Traffic traffic) {
    const bool isInPlace = traffic == Traffic::InPlace || traffic == Traffic::InPlaceMasked;
    MovedBytes bytes{(isInPlace ? pictures.source : pictures.destination).Bytes(), {}, pictures.source.ByteCount()};
    const std::vector<const BenchPicture*> sources = Sources(pictures, traffic);
    for (std::size_t i = 0; i < sources.size(); ++i) bytes.sources[i] = sources[i]->Bytes();
    if (bytes.count % kCacheLine != 0) throw std::logic_error("the picture does not end with a cache line");
    return bytes;
}

MovedBytes Part(const MovedBytes& whole, Band band) {
    MovedBytes part{whole.target + band.first, {}, band.end - band.first};
    for (std::size_t i = 0; i < std::size(part.sources); ++i) {
        if (whole.sources[i]) part.sources[i] = whole.sources[i] + band.first;
    }
    return part;
}

/// Not tried yet.
std::vector<LimitLoop> Loops(const PictureSet& pictures, Traffic traffic, int tasks) {
    const MovedBytes whole = Whole(pictures, traffic);
    std::vector<LimitLoop> loops;
    for (const LoopForm& form : Forms()) {
        const auto move = form.move[static_cast<std::size_t>(traffic)];
        if (!move) continue;
        loops.push_back(
            {form.name,
             [move, whole, tasks] { RunInBands(whole.count, tasks, [&](Band band) { move(Part(whole, band)); }); }, 0});
    }
    return loops;
}

/// GB/s by form.
using Paces = std::map<std::string, double>;

Paces Try(const std::vector<LimitLoop>& loops, const PictureSet& pictures, double gigabytes) {
    std::vector<std::vector<double>> seconds(loops.size());
    for (int round = 0; round < kWarmUps + kTrialRounds; ++round) {
        for (std::size_t i = 0; i < loops.size(); ++i) {
            pictures.Prepare();
            const double taken = SecondsOf(loops[i].run);
            if (round >= kWarmUps) seconds[i].push_back(taken);
        }
    }
    Paces paces;
    for (std::size_t i = 0; i < loops.size(); ++i) paces[loops[i].form] = gigabytes / Median(seconds[i]);
    return paces;
}

}  // namespace

double GigabytesMoved(const PictureSet& pictures, Traffic traffic) {
    const std::size_t moved = Sources(pictures, traffic).size() + 1;
    return static_cast<double>(moved * pictures.source.ByteCount()) / 1e9;
}

std::vector<LimitLoop> LoopsByPace(const PictureSet& pictures, Traffic traffic, int tasks) {
    static std::map<std::tuple<Traffic, int, int>, Paces> tried;
    std::vector<LimitLoop> loops = Loops(pictures, traffic, tasks);
    Paces& paces = tried[{traffic, pictures.source.BytesPerPixel(), tasks}];
    if (paces.empty()) paces = Try(loops, pictures, GigabytesMoved(pictures, traffic));
    for (LimitLoop& loop : loops) loop.gigabytesPerSecond = paces.at(loop.form);
    std::sort(loops.begin(), loops.end(),
              [](const auto& a, const auto& b) { return a.gigabytesPerSecond > b.gigabytesPerSecond; });
    return loops;
}

}  // namespace ombrix::bench
