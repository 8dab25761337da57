#include "bench/peers/peers.h"

#include <string>

#include "bench/pace.h"

namespace ombrix::bench {
namespace {

struct Library {
    const char* name;
    std::function<void()> (*workFor)(const RowName& row, PictureSet& pictures);
};

constexpr Library kLibraries[] = {
#if defined(OMBRIX_BENCH_OPENCV)
    {"OpenCV", OpenCvWork},
#endif
#if defined(OMBRIX_BENCH_LIBYUV)
    {"libyuv", LibyuvWork},
#endif
#if defined(OMBRIX_BENCH_PIXMAN)
    {"pixman", PixmanWork},
#endif
#if defined(OMBRIX_BENCH_LIBVIPS)
    {"libvips", LibvipsWork},
#endif
    {nullptr, nullptr},  // an array may not be empty
};

}  // namespace

void MeasurePeers(benchmark::State& state, const RowName& row, PictureSet& pictures) {
    if (row.tasks != 1 || pictures.source.BytesPerPixel() != 4) return;
    for (const Library& library : kLibraries) {
        const std::function<void()> work = library.workFor ? library.workFor(row, pictures) : nullptr;
        if (!work) continue;
        const Pace pace = MeasureBriefly(
            {.prepare = [&] { pictures.RestoreSource(); }, .copy = [&] { pictures.CopySource(1); }, .work = work});
        state.counters[std::string(kPeerCounter) + library.name] = pace.ratio;
    }
    pictures.RestoreSource();
    if (const double ratio = PillowRatio(row, pictures.source.Extent()); ratio > 0) {
        state.counters[std::string(kPeerCounter) + "Pillow"] = ratio;
    }
}

}  // namespace ombrix::bench
