#include "engine/depth_change.h"

#include <cstring>

#include "engine/instruction_level.h"
#include "engine/pixel.h"

#if defined(OMBRIX_HAS_LEVELS)
#include <immintrin.h>
#endif

namespace ombrix {
namespace {

using Order = DepthChange::Order;

#if defined(OMBRIX_HAS_LEVELS)
constexpr std::int64_t kPixelsAtOnce = 4;
/// As many pixels of 3 bytes as the 16 bytes that are read or written for 4 of them reach into.
constexpr std::int64_t kPixelsTouched = 6;

/// Moves the bytes of four pixels at a time from `stepFrom` bytes a pixel to `stepTo`, as long as that touches no other
/// pixels; tells how many are done. Compilers make no vector code of loops over pixels of 3 bytes.
[[gnu::target(OMBRIX_V3_FEATURES)]] std::int64_t MoveBytes(const std::uint8_t* from, int stepFrom, std::uint8_t* to,
                                                           int stepTo, std::int64_t count, const Order& order) {
    const __m128i control = _mm_loadu_si128(reinterpret_cast<const __m128i*>(order.data()));
    std::int64_t x = 0;
    for (; count - x >= kPixelsTouched; x += kPixelsAtOnce) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + stepFrom * x));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + stepTo * x), _mm_shuffle_epi8(bytes, control));
    }
    return x;
}

bool MovesBytes() { return gInstructionLevel >= InstructionLevel::V3; }
#else
std::int64_t MoveBytes(const std::uint8_t*, int, std::uint8_t*, int, std::int64_t, const Order&) { return 0; }
bool MovesBytes() { return false; }
#endif

Order WideningOrder() {
    Order order;
    for (int i = 0; i < 16; ++i) {
        const int byte = i % 4;
        order[i] =
            byte == NULL_PIX ? DepthChange::kNone : static_cast<std::uint8_t>(i / 4 * 3 + byte - (byte > NULL_PIX));
    }
    return order;
}

Order NarrowingOrder() {
    Order order;
    order.fill(DepthChange::kNone);
    for (int i = 0; i < 12; ++i) order[i] = static_cast<std::uint8_t>(i / 3 * 4 + i % 3 + (i % 3 >= NULL_PIX));
    return order;
}

}  // namespace

DepthChange::DepthChange()
    : below_((1u << 8 * NULL_PIX) - 1), widening_(WideningOrder()), narrowing_(NarrowingOrder()) {}

void DepthChange::Widen(const std::uint8_t* from, std::uint8_t* to, std::int64_t count) const {
    std::int64_t x = MovesBytes() ? MoveBytes(from, 3, to, 4, count, widening_) : 0;
    for (; x + 1 < count; ++x) StoreWord(to + 4 * x, Widened(LoadWord(from + 3 * x)));
    const std::uint8_t* last = from + 3 * (count - 1);  // a word would reach beyond it
    StoreWord(to + 4 * (count - 1), Widened(last[0] | last[1] << 8 | last[2] << 16));
}

void DepthChange::Narrow(const std::uint8_t* from, std::uint8_t* to, std::int64_t count) const {
    std::int64_t x = MovesBytes() ? MoveBytes(from, 4, to, 3, count, narrowing_) : 0;
    // Each word but the last writes a byte too much, which the next one puts right.
    for (; x + 1 < count; ++x) StoreWord(to + 3 * x, Narrowed(LoadWord(from + 4 * x)));
    const std::uint32_t last = Narrowed(LoadWord(from + 4 * (count - 1)));
    std::memcpy(to + 3 * (count - 1), &last, 3);
}

}  // namespace ombrix
