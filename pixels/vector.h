// Vectors as wide as the level's registers, and the operations that the language has no operator for. The only file
// with intrinsics; what every processor has to do stands beside it in a plain form.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "pixels/level.h"

#if defined(__x86_64__)
#include <immintrin.h>
#elif defined(__aarch64__)
#include <arm_neon.h>
#endif

namespace ombrix {
inline namespace OMBRIX_LEVEL {

#if defined(__AVX512BW__)
#define OMBRIX_BY_WIDTH(v4, v3, v1) v4
constexpr int kVectorBytes = 64;
#elif defined(__AVX2__)
#define OMBRIX_BY_WIDTH(v4, v3, v1) v3
constexpr int kVectorBytes = 32;
#else
#define OMBRIX_BY_WIDTH(v4, v3, v1) v1
constexpr int kVectorBytes = 16;
#endif

using U8 = std::uint8_t __attribute__((vector_size(kVectorBytes)));
using U16 = std::uint16_t __attribute__((vector_size(kVectorBytes)));
using U32 = std::uint32_t __attribute__((vector_size(kVectorBytes)));
using I32 = std::int32_t __attribute__((vector_size(kVectorBytes)));
using F32 = float __attribute__((vector_size(kVectorBytes)));
using F64 = double __attribute__((vector_size(kVectorBytes)));
using I64 = std::int64_t __attribute__((vector_size(kVectorBytes)));
using HalfI32 = std::int32_t __attribute__((vector_size(kVectorBytes / 2)));

constexpr int kVectorPixels = kVectorBytes / 4;

template <class V>
inline V Load(const void* bytes) {
    V vector;
    __builtin_memcpy(&vector, bytes, sizeof vector);
    return vector;
}

template <class V>
inline void Store(void* bytes, V vector) {
    __builtin_memcpy(bytes, &vector, sizeof vector);
}

/// Stores past the caches; `bytes` is a multiple of the vector's size. StreamFence has to follow.
inline void Stream(void* bytes, U8 vector) {
#if defined(__x86_64__)
    OMBRIX_BY_WIDTH(_mm512_stream_si512(static_cast<__m512i*>(bytes), reinterpret_cast<__m512i>(vector)),
                    _mm256_stream_si256(static_cast<__m256i*>(bytes), reinterpret_cast<__m256i>(vector)),
                    _mm_stream_si128(static_cast<__m128i*>(bytes), reinterpret_cast<__m128i>(vector)));
#else
    Store(bytes, vector);
#endif
}

/// Orders streamed stores before what other threads are told afterwards.
inline void StreamFence() {
#if defined(__x86_64__)
    _mm_sfence();
#endif
}

// ---- Plain forms ------------------------------------------------------------------------------------------------

namespace plain {

inline U16 HighProduct(U16 a, U16 b) {
    const U32 x = reinterpret_cast<U32>(a);
    const U32 y = reinterpret_cast<U32>(b);
    return reinterpret_cast<U16>((((x & 0xffff) * (y & 0xffff)) >> 16) | (((x >> 16) * (y >> 16)) & 0xffff0000));
}

inline I32 PairSums(U16 a, U16 b) {
    const U32 x = reinterpret_cast<U32>(a);
    const U32 y = reinterpret_cast<U32>(b);
    return reinterpret_cast<I32>((x & 0xffff) * (y & 0xffff) + (x >> 16) * (y >> 16));
}

inline bool Any(I32 lanes) {
    std::int32_t any = 0;
    for (int i = 0; i < kVectorPixels; ++i) any |= lanes[i];
    return any != 0;
}

inline I32 BitsOf(const std::uint32_t* table, I32 index) {
    I32 bits{};
    for (int i = 0; i < kVectorPixels; ++i) {
        bits[i] = static_cast<std::int32_t>(table[index[i] >> 5] >> (index[i] & 31) & 1);
    }
    return bits;
}

inline F32 Reciprocal(F32 x) { return 1.0f / x; }

}  // namespace plain

// ---- The best form of this level ----------------------------------------------------------------------------------

/// The upper halves of products: a * b >> 16.
inline U16 HighProduct(U16 a, U16 b) {
#if defined(__x86_64__)
    return reinterpret_cast<U16>(
        OMBRIX_BY_WIDTH(_mm512_mulhi_epu16(reinterpret_cast<__m512i>(a), reinterpret_cast<__m512i>(b)),
                        _mm256_mulhi_epu16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)),
                        _mm_mulhi_epu16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b))));
#else
    return plain::HighProduct(a, b);
#endif
}

/// a0 * b0 + a1 * b1 of each pair of neighbours, all of which are below 32768.
inline I32 PairSums(U16 a, U16 b) {
#if defined(__x86_64__)
    return reinterpret_cast<I32>(
        OMBRIX_BY_WIDTH(_mm512_madd_epi16(reinterpret_cast<__m512i>(a), reinterpret_cast<__m512i>(b)),
                        _mm256_madd_epi16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)),
                        _mm_madd_epi16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b))));
#else
    return plain::PairSums(a, b);
#endif
}

/// Whether any lane is not 0.
inline bool Any(I32 lanes) {
#if defined(__x86_64__)
    return OMBRIX_BY_WIDTH(
        _mm512_test_epi32_mask(reinterpret_cast<__m512i>(lanes), reinterpret_cast<__m512i>(lanes)) != 0,
        _mm256_testz_si256(reinterpret_cast<__m256i>(lanes), reinterpret_cast<__m256i>(lanes)) == 0,
        _mm_movemask_epi8(_mm_cmpeq_epi8(reinterpret_cast<__m128i>(lanes), _mm_setzero_si128())) != 0xffff);
#elif defined(__aarch64__)
    return vmaxvq_u32(reinterpret_cast<uint32x4_t>(lanes)) != 0;
#else
    return plain::Any(lanes);
#endif
}

/// Bits of a table of 256, by an index from 0 to 255: 0 or 1 in each lane.
inline I32 BitsOf(const std::uint32_t* table, I32 index) {
#if defined(__AVX512BW__)
    const __m512i words = _mm512_broadcast_i64x4(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(table)));
    const __m512i found = _mm512_permutexvar_epi32(reinterpret_cast<__m512i>(index >> 5), words);
    return reinterpret_cast<I32>(_mm512_rorv_epi32(found, reinterpret_cast<__m512i>(index))) & 1;
#elif defined(__AVX2__)
    const __m256i words = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(table));
    const __m256i found = _mm256_permutevar8x32_epi32(words, reinterpret_cast<__m256i>(index >> 5));
    return reinterpret_cast<I32>(reinterpret_cast<U32>(found) >> reinterpret_cast<U32>(index & 31)) & 1;
#elif defined(__aarch64__)
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(table);
    const U8 found = reinterpret_cast<U8>(
        vqtbl2q_u8({{vld1q_u8(bytes), vld1q_u8(bytes + 16)}}, reinterpret_cast<uint8x16_t>(index >> 3)));
    return (reinterpret_cast<I32>(found) & 0xff) >> (index & 7) & 1;
#else
    return plain::BitsOf(table, index);
#endif
}

/// 1 / x with a relative error below 2^-20: the processor's estimate (1.5 * 2^-12 at most) and one Newton step, which
/// squares the error. Takes a quarter of a division's time. Callers allow for the error.
inline F32 Reciprocal(F32 x) {
#if defined(__x86_64__)
    const F32 estimate = reinterpret_cast<F32>(OMBRIX_BY_WIDTH(_mm512_rcp14_ps(reinterpret_cast<__m512>(x)),
                                                               _mm256_rcp_ps(reinterpret_cast<__m256>(x)),
                                                               _mm_rcp_ps(reinterpret_cast<__m128>(x))));
    return estimate * (2.0f - x * estimate);
#else
    return plain::Reciprocal(x);
#endif
}

#if defined(__SSSE3__) || defined(__aarch64__)
#define OMBRIX_HAS_BYTE_SHUFFLE
/// Shuffles the bytes of each 16: byte i becomes that at order[i], or 0 where the order is 0x80.
inline U8 ShuffleSixteens(U8 bytes, U8 order) {
#if defined(__aarch64__)
    return reinterpret_cast<U8>(vqtbl1q_u8(reinterpret_cast<uint8x16_t>(bytes), reinterpret_cast<uint8x16_t>(order)));
#else
    return reinterpret_cast<U8>(
        OMBRIX_BY_WIDTH(_mm512_shuffle_epi8(reinterpret_cast<__m512i>(bytes), reinterpret_cast<__m512i>(order)),
                        _mm256_shuffle_epi8(reinterpret_cast<__m256i>(bytes), reinterpret_cast<__m256i>(order)),
                        _mm_shuffle_epi8(reinterpret_cast<__m128i>(bytes), reinterpret_cast<__m128i>(order))));
#endif
}

/// Loads 12 bytes into each 16 of a vector; the last 4 of each mean nothing. Reads 4 bytes beyond the last 12.
inline U8 LoadTwelves(const std::uint8_t* bytes) {
#if defined(__AVX512BW__)
    const __m512i lower =
        _mm512_inserti64x2(_mm512_castsi128_si512(Load<__m128i>(bytes)), Load<__m128i>(bytes + 12), 1);
    const __m512i more = _mm512_inserti64x2(lower, Load<__m128i>(bytes + 24), 2);
    return reinterpret_cast<U8>(_mm512_inserti64x2(more, Load<__m128i>(bytes + 36), 3));
#elif defined(__AVX2__)
    return reinterpret_cast<U8>(
        _mm256_inserti128_si256(_mm256_castsi128_si256(Load<__m128i>(bytes)), Load<__m128i>(bytes + 12), 1));
#else
    return Load<U8>(bytes);
#endif
}

/// Stores 12 bytes of each 16, side by side. Writes 4 bytes beyond the last 12.
inline void StoreTwelves(std::uint8_t* bytes, U8 sixteens) {
#if defined(__AVX512BW__)
    const auto whole = reinterpret_cast<__m512i>(sixteens);
    Store(bytes, _mm512_castsi512_si128(whole));
    Store(bytes + 12, _mm512_extracti64x2_epi64(whole, 1));
    Store(bytes + 24, _mm512_extracti64x2_epi64(whole, 2));
    Store(bytes + 36, _mm512_extracti64x2_epi64(whole, 3));
#elif defined(__AVX2__)
    const auto whole = reinterpret_cast<__m256i>(sixteens);
    Store(bytes, _mm256_castsi256_si128(whole));
    Store(bytes + 12, _mm256_extracti128_si256(whole, 1));
#else
    Store(bytes, sixteens);
#endif
}
#endif

#if defined(__AVX512BW__)
#define OMBRIX_HAS_WORD_PERMUTATION
/// Entries of a table of 256, by an index from 0 to 255.
inline U16 EntriesOf(const std::uint16_t* table, U16 index) {
    const auto sought = reinterpret_cast<__m512i>(index);  // of which a permutation looks at 6 bits
    const auto quarter = [table, sought](std::ptrdiff_t i) {
        return _mm512_permutex2var_epi16(Load<__m512i>(table + 64 * i), sought, Load<__m512i>(table + 64 * i + 32));
    };
    const __mmask32 isOdd = _mm512_test_epi16_mask(sought, _mm512_set1_epi16(64));
    const __m512i lower = _mm512_mask_mov_epi16(quarter(0), isOdd, quarter(1));
    const __m512i upper = _mm512_mask_mov_epi16(quarter(2), isOdd, quarter(3));
    return reinterpret_cast<U16>(
        _mm512_mask_mov_epi16(lower, _mm512_test_epi16_mask(sought, _mm512_set1_epi16(128)), upper));
}
#endif

#if defined(__AVX512VBMI__)
#define OMBRIX_HAS_BYTE_PERMUTATION
/// Permutes all bytes: byte i becomes that at order[i], whose lower 6 bits count.
inline U8 Permuted(U8 bytes, U8 order) {
    return reinterpret_cast<U8>(
        _mm512_permutexvar_epi8(reinterpret_cast<__m512i>(order), reinterpret_cast<__m512i>(bytes)));
}
/// The same, but only from byte `first` on; the bytes before are those of `before`.
template <int first>
inline U8 PermutedFrom(U8 before, U8 bytes, U8 order) {
    return reinterpret_cast<U8>(
        _mm512_mask_permutexvar_epi8(reinterpret_cast<__m512i>(before), ~std::uint64_t{0} << first,
                                     reinterpret_cast<__m512i>(order), reinterpret_cast<__m512i>(bytes)));
}

/// A table of 256 bytes, in registers.
struct Table {
    explicit Table(const std::uint8_t* bytes)
        : quarters{Load<U8>(bytes), Load<U8>(bytes + 64), Load<U8>(bytes + 128), Load<U8>(bytes + 192)} {}

    U8 quarters[4];
};

inline U8 LookUp(const Table& table, U8 index) {
    const auto sought = reinterpret_cast<__m512i>(index);  // of which a permutation looks at 7 bits
    const auto half = [&table, sought](int first) {
        return _mm512_permutex2var_epi8(reinterpret_cast<__m512i>(table.quarters[first]), sought,
                                        reinterpret_cast<__m512i>(table.quarters[first + 1]));
    };
    return reinterpret_cast<U8>(_mm512_mask_mov_epi8(half(0), _mm512_movepi8_mask(sought), half(2)));
}
#endif

/// The lower or upper lanes, and the two put together.
template <int first, int... i>
inline HalfI32 Half(I32 lanes, std::integer_sequence<int, i...>) {
    return __builtin_shufflevector(lanes, lanes, (first + i)...);
}
inline HalfI32 LowerHalf(I32 lanes) { return Half<0>(lanes, std::make_integer_sequence<int, kVectorPixels / 2>()); }
inline HalfI32 UpperHalf(I32 lanes) {
    return Half<kVectorPixels / 2>(lanes, std::make_integer_sequence<int, kVectorPixels / 2>());
}
template <int... i>
inline I32 Joined(HalfI32 lower, HalfI32 upper, std::integer_sequence<int, i...>) {
    return __builtin_shufflevector(lower, upper, i...);
}
inline I32 Joined(HalfI32 lower, HalfI32 upper) {
    return Joined(lower, upper, std::make_integer_sequence<int, kVectorPixels>());
}

/// Whole numbers as doubles, and back, truncated. (g++ 12 would go lane by lane, or by half vectors.)
inline F64 ToDouble(HalfI32 lanes) {
#if defined(__x86_64__)
    return reinterpret_cast<F64>(OMBRIX_BY_WIDTH(
        _mm512_cvtepi32_pd(reinterpret_cast<__m256i>(lanes)), _mm256_cvtepi32_pd(reinterpret_cast<__m128i>(lanes)),
        _mm_cvtepi32_pd(_mm_set1_epi64x(reinterpret_cast<std::int64_t>(lanes)))));
#elif defined(__aarch64__)
    return reinterpret_cast<F64>(vcvtq_f64_s64(vmovl_s32(reinterpret_cast<int32x2_t>(lanes))));
#else
    return __builtin_convertvector(lanes, F64);
#endif
}
inline HalfI32 ToInt(F64 lanes) {
#if defined(__x86_64__)
    return reinterpret_cast<HalfI32>(OMBRIX_BY_WIDTH(
        _mm512_cvttpd_epi32(reinterpret_cast<__m512d>(lanes)), _mm256_cvttpd_epi32(reinterpret_cast<__m256d>(lanes)),
        reinterpret_cast<I64>(_mm_cvttpd_epi32(reinterpret_cast<__m128d>(lanes)))[0]));
#elif defined(__aarch64__)
    return reinterpret_cast<HalfI32>(vmovn_s64(vcvtq_s64_f64(reinterpret_cast<float64x2_t>(lanes))));
#else
    return __builtin_convertvector(lanes, HalfI32);
#endif
}

#if defined(__FMA__) || defined(__aarch64__)
#define OMBRIX_HAS_FUSED_MULTIPLY_ADD
/// a * b + c, rounded once.
inline F64 FusedMultiplyAdd(F64 a, F64 b, F64 c) {
#if defined(__aarch64__)
    return reinterpret_cast<F64>(vfmaq_f64(reinterpret_cast<float64x2_t>(c), reinterpret_cast<float64x2_t>(a),
                                           reinterpret_cast<float64x2_t>(b)));
#else
    return reinterpret_cast<F64>(OMBRIX_BY_WIDTH(
        _mm512_fmadd_pd(reinterpret_cast<__m512d>(a), reinterpret_cast<__m512d>(b), reinterpret_cast<__m512d>(c)),
        _mm256_fmadd_pd(reinterpret_cast<__m256d>(a), reinterpret_cast<__m256d>(b), reinterpret_cast<__m256d>(c)),
        _mm_fmadd_pd(reinterpret_cast<__m128d>(a), reinterpret_cast<__m128d>(b), reinterpret_cast<__m128d>(c))));
#endif
}
#endif

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
