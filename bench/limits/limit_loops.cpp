#include "bench/limits/limit_loops.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace ombrix::bench::OMBRIX_LOOP_LEVEL {
namespace {

#if defined(__AVX512F__)
constexpr std::size_t kVectorBytes = 64;
#elif defined(__AVX2__)
constexpr std::size_t kVectorBytes = 32;
#else
constexpr std::size_t kVectorBytes = 16;
#endif

using Vector = std::uint64_t __attribute__((vector_size(kVectorBytes), may_alias));

/// The compiler does not know its value, so bytes that it is mixed into have to be loaded and stored.
const volatile std::uint64_t kUnknownZero = 0;

void Store(std::uint8_t* target, Vector value) { *reinterpret_cast<Vector*>(target) = value; }

#if defined(__x86_64__)
constexpr bool kCanStream = true;

/// Stores past the caches.
void Stream(std::uint8_t* target, Vector value) {
#if defined(__AVX512F__)
    _mm512_stream_si512(reinterpret_cast<__m512i*>(target), reinterpret_cast<__m512i>(value));
#elif defined(__AVX2__)
    _mm256_stream_si256(reinterpret_cast<__m256i*>(target), reinterpret_cast<__m256i>(value));
#else
    _mm_stream_si128(reinterpret_cast<__m128i*>(target), reinterpret_cast<__m128i>(value));
#endif
}

void FinishStreaming() { _mm_sfence(); }
#else
constexpr bool kCanStream = false;
void Stream(std::uint8_t* target, Vector value) { Store(target, value); }
void FinishStreaming() {}
#endif

enum class Target { IsFirstSource, Stored, Streamed };

/// Prefetches `ahead` bytes ahead; 0: not at all.
template <int sourceCount, Target targetKind, std::size_t ahead>
void Move(const MovedBytes& bytes) {
    const Vector zero = Vector{} ^ kUnknownZero;
    // Local copies: the stores could change the originals.
    std::uint8_t* const target = bytes.target;
    const std::uint8_t* const sources[3] = {bytes.sources[0], bytes.sources[1], bytes.sources[2]};
    const std::size_t count = bytes.count;
    for (std::size_t line = 0; line < count; line += kCacheLine) {
        if constexpr (ahead > 0) {
            for (int i = 0; i < sourceCount; ++i) __builtin_prefetch(sources[i] + line + ahead);
            if constexpr (targetKind == Target::Stored) __builtin_prefetch(target + line + ahead, 1);
        }
        for (std::size_t at = 0; at < kCacheLine; at += kVectorBytes) {
            Vector value = zero;
            for (int i = 0; i < sourceCount; ++i) value ^= *reinterpret_cast<const Vector*>(sources[i] + line + at);
            if constexpr (targetKind == Target::Streamed) {
                Stream(target + line + at, value);
            } else {
                Store(target + line + at, value);
            }
        }
    }
    if constexpr (targetKind == Target::Streamed) FinishStreaming();
}

template <std::size_t ahead>
constexpr LoopForm Storing(const char* name) {
    return {name,
            {Move<1, Target::IsFirstSource, ahead>, Move<2, Target::IsFirstSource, ahead>,
             Move<1, Target::Stored, ahead>, Move<2, Target::Stored, ahead>, Move<3, Target::Stored, ahead>}};
}

/// Not in place: there the lines are in the caches by then.
template <std::size_t ahead>
constexpr LoopForm Streaming(const char* name) {
    if constexpr (!kCanStream) return {name, {}};
    return {name,
            {nullptr, nullptr, Move<1, Target::Streamed, ahead>, Move<2, Target::Streamed, ahead>,
             Move<3, Target::Streamed, ahead>}};
}

}  // namespace

const LoopForm kForms[kFormCount] = {
    Storing<0>("plain"),    Storing<1024>("ahead 1K"),    Storing<2048>("ahead 2K"),    Storing<4096>("ahead 4K"),
    Streaming<0>("stream"), Streaming<1024>("stream 1K"), Streaming<2048>("stream 2K"), Streaming<4096>("stream 4K"),
};

}  // namespace ombrix::bench::OMBRIX_LOOP_LEVEL
