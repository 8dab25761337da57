#include "bench/peers/peers.h"

#include <string>
namespace ombrix::bench {
namespace {

struct Library {
    const char* name;
    std::function<void()> (*counterpartOf)(const LineName& line, PictureSet& pictures);
};

constexpr Library kLibraries[] = {
#if defined(OMBRIX_BENCH_OPENCV)
    {"OpenCV", OpenCvCounterpart},
#endif
#if defined(OMBRIX_BENCH_LIBYUV)
    {"libyuv", LibyuvCounterpart},
#endif
#if defined(OMBRIX_BENCH_PIXMAN)
    {"pixman", PixmanCounterpart},
#endif
#if defined(OMBRIX_BENCH_LIBVIPS)
    {"libvips", LibvipsCounterpart},
#endif
    {nullptr, nullptr},  // an array may not be empty
};

}  // namespace

void MeasurePeers(benchmark::State& state, const LineName& line, PictureSet& pictures, const Contest& contest,
                  double limitSeconds) {
    if (line.tasks != 1 || pictures.source.BytesPerPixel() != 4) return;
    for (const Library& library : kLibraries) {
        pictures.Prepare();
        const auto counterpart = library.counterpartOf ? library.counterpartOf(line, pictures) : nullptr;
        if (!counterpart) continue;
        const Share share = MeasureShareBriefly({contest.prepare, contest.limits, counterpart});
        state.counters[std::string(kOtherCounter) + library.name] = share.share;
    }
    if (const double seconds = PillowSeconds(line, pictures.source.Extent()); seconds > 0) {
        state.counters[std::string(kOtherCounter) + "Pillow"] = limitSeconds / seconds;
    }
}

}  // namespace ombrix::bench
