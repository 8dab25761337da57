#include "engine/stream_copy.h"

#include <algorithm>
#include <cstring>

#include "engine/instruction_level.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace ombrix {

// Between 16 MB, where streaming still loses a tenth, and 32 MB, where it gains a half: measured with 2 MiB of own
// cache and a share of a large common one, whose size says little where many programs use it.
std::int64_t gStreamedFromBytes = std::int64_t{24} << 20;

#if defined(__x86_64__)
namespace {

constexpr std::size_t kLine = 64;  // bytes of a cache line

#if defined(OMBRIX_HAS_LEVELS)
// A line in one store: lines that are put together from four are often sent to memory in parts.
[[gnu::target(OMBRIX_V4_FEATURES)]] void StreamLinesV4(std::uint8_t* destination, const std::uint8_t* source,
                                                       std::size_t lines) {
    for (std::size_t i = 0; i < lines; ++i) {
        _mm512_stream_si512(reinterpret_cast<__m512i*>(destination + i * kLine),
                            _mm512_loadu_si512(source + i * kLine));
    }
}
#endif

void StreamLines(std::uint8_t* destination, const std::uint8_t* source, std::size_t lines) {
    for (std::size_t i = 0; i < lines * kLine; i += sizeof(__m128i)) {
        _mm_stream_si128(reinterpret_cast<__m128i*>(destination + i),
                         _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + i)));
    }
}

}  // namespace

void StreamCopy(std::uint8_t* destination, const std::uint8_t* source, std::size_t bytes) {
    const std::size_t toLine = std::min((kLine - reinterpret_cast<std::uintptr_t>(destination) % kLine) % kLine, bytes);
    std::memcpy(destination, source, toLine);
    const std::size_t lines = (bytes - toLine) / kLine;
    const std::size_t streamed = toLine + lines * kLine;
#if defined(OMBRIX_HAS_LEVELS)
    const auto stream = gInstructionLevel >= InstructionLevel::V4 ? StreamLinesV4 : StreamLines;
#else
    const auto stream = StreamLines;
#endif
    stream(destination + toLine, source + toLine, lines);
    std::memcpy(destination + streamed, source + streamed, bytes - streamed);
}

void StreamFence() { _mm_sfence(); }

#else

void StreamCopy(std::uint8_t* destination, const std::uint8_t* source, std::size_t bytes) {
    std::memcpy(destination, source, bytes);
}

void StreamFence() {}

#endif

}  // namespace ombrix
