#include "engine/row_walk.h"

#include <algorithm>

#include "engine/depth_change.h"
#include "engine/lane.h"
#include "engine/stream_copy.h"

namespace ombrix {
namespace {

/// Pixels that go through buffers at a time. Few, so that what is read next comes in while what was written goes out.
constexpr std::int64_t kChunk = 256;

/// The pixels of a row before the first that begins a line of the caches. Vectors as long as a line would else lie in
/// two of them each: brightness in place takes a third more of the time then. In short rows it would not matter.
std::int64_t PixelsToLine(const RowJob& job) {
    constexpr std::int64_t kLongRow = 512;
    const auto offset = static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(job.destination) % kBlockBytes);
    if (job.count < kLongRow || job.source.bytesPerPixel != 4 || offset % 4 != 0) return 0;
    return (kBlockBytes - offset) % kBlockBytes / 4;
}

class Chunks {
  public:
    Chunks(const RowJob& job, const WordKernel& kernel, const WordKernel& mix)
        : job_(job), kernel_(kernel), mix_(mix) {}

    void Run(std::int64_t toLine) {
        if (toLine > 0) RunOne(0, toLine);
        for (std::int64_t first = toLine; first < job_.count; first += kChunk) {
            RunOne(first, std::min(kChunk, job_.count - first));
        }
    }

  private:
    void RunOne(std::int64_t first, std::int64_t count) {
        std::uint8_t* destination = job_.destination + job_.source.bytesPerPixel * first;
        const bool isNarrow = job_.source.bytesPerPixel == 3;
        std::uint8_t* const words = isNarrow || job_.isStreamed ? result_ : destination;
        const std::uint8_t* const source = Words(job_.source, source_, first, count);
        const std::uint8_t* const fill = Words(job_.fill, fill_, first, count);
        if (mix_) {
            kernel_({source, fill, nullptr, unmixed_, count});
            mix_({source, unmixed_, Words(job_.mask, mask_, first, count), words, count});
        } else {
            kernel_({source, fill, nullptr, words, count});
        }
        if (isNarrow) {
            change_.Narrow(words, destination, count);
        } else if (job_.isStreamed) {
            StreamCopy(destination, words, static_cast<std::size_t>(4 * count));
        }
    }

    const std::uint8_t* Words(const PixelRow& row, std::uint8_t* buffer, std::int64_t first, std::int64_t count) const {
        if (!row.pixels) return nullptr;
        if (row.bytesPerPixel == 4) return row.pixels + 4 * first;
        change_.Widen(row.pixels + 3 * first, buffer, count);
        return buffer;
    }

    const RowJob& job_;
    const WordKernel& kernel_;
    const WordKernel& mix_;
    DepthChange change_;
    alignas(64) std::uint8_t source_[4 * kChunk];
    alignas(64) std::uint8_t fill_[4 * kChunk];
    alignas(64) std::uint8_t mask_[4 * kChunk];
    alignas(64) std::uint8_t unmixed_[4 * kChunk];
    alignas(64) std::uint8_t result_[4 * kChunk];
};

}  // namespace

bool ShouldStream(const StdMPEffectParams& params) {
    return params.srcBase != params.dstBase &&
           std::int64_t{params.dstRowBytes} * params.generic.height >= gStreamedFromBytes;
}

void WalkRow(const RowJob& job, const WordKernel& kernel, const WordKernel& mix) {
    if (job.count <= 0) return;
    const auto hasWords = [](const PixelRow& row) { return !row.pixels || row.bytesPerPixel == 4; };
    const std::int64_t toLine = PixelsToLine(job);
    if (!mix && !job.isStreamed && hasWords(job.source) && hasWords(job.fill)) {
        const auto run = [&job, &kernel](std::int64_t first, std::int64_t count) {
            const std::uint8_t* const fill = job.fill.pixels ? job.fill.pixels + 4 * first : nullptr;
            kernel({job.source.pixels + 4 * first, fill, nullptr, job.destination + 4 * first, count});
        };
        if (toLine > 0) run(0, toLine);
        run(toLine, job.count - toLine);
    } else {
        Chunks(job, kernel, mix).Run(toLine);
    }
}

}  // namespace ombrix
