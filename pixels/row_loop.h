// The loop over the pixels of a row: loads vectors, applies a formula, mixes, keeps the fourth bytes, stores.
#pragma once

#include "pixels/apply.h"
#include "pixels/depth.h"
#include "pixels/mixes.h"
#include "pixels/row.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

constexpr int kLineBytes = 64;  // of a cache line
constexpr int kLinePixels = kLineBytes / 4;
/// How far ahead the loops prefetch. The processor does so by itself, but not beyond a page.
constexpr int kPrefetchBytes = 4096;
/// The width, in pixels, from which on it pays to align a row's vectors to cache lines.
constexpr std::int64_t kLongRow = 512;

/// The roles of a row as bytes of one depth. A role that is not there is null.
struct Spans {
    const std::uint8_t* source;
    const std::uint8_t* fill;
    const std::uint8_t* mask;
    std::uint8_t* destination;

    Spans From(std::int64_t bytes) const {
        return {source + bytes, fill ? fill + bytes : nullptr, mask ? mask + bytes : nullptr, destination + bytes};
    }
};

/// One row, for one formula and one mix. Modes have a fill.
template <class Formula, class Mix, bool hasFill>
class RowRun {
  public:
    RowRun(const Row& row, const RowSettings& settings)
        : row_(row),
          settings_(settings),
          // Pixels of 4 bytes that begin between words never reach the beginning of a line.
          isStreamed_(settings.isStreamed &&
                      (row.source.bytesPerPixel == 3 || reinterpret_cast<std::uintptr_t>(row.destination) % 4 == 0)),
          formula_(*static_cast<const Formula*>(settings.formula)),
          apply_(formula_, settings.format),
          mix_(settings),
          fourth_(ByteOfWords(settings.format.fourth)) {}

    void Run() const {
        const bool isTriples = row_.source.bytesPerPixel == 3;
        const auto is4 = [](const PixelRow& row) { return !row.pixels || row.bytesPerPixel == 4; };
        if (!isTriples && is4(row_.fill) && is4(row_.mask)) {
            Words({row_.source.pixels, row_.fill.pixels, row_.mask.pixels, row_.destination}, row_.count, isStreamed_);
            return;
        }
        if constexpr (kTakesTriples) {
            const auto is3 = [](const PixelRow& row) { return !row.pixels || row.bytesPerPixel == 3; };
            if (isTriples && is3(row_.fill) && is3(row_.mask)) {
                Triples({row_.source.pixels, row_.fill.pixels, row_.mask.pixels, row_.destination}, row_.count);
                return;
            }
        }
        Chunks();
    }

  private:
    // ---- Pixels of 4 bytes ------------------------------------------------------------------------------------------

    void Words(const Spans& spans, std::int64_t count, bool isStreamed) const {
        std::int64_t x = isStreamed || count >= kLongRow ? PixelsToLine(spans.destination, 4) : 0;
        if (x > count) x = count;
        if (x > 0) Block(spans, x);
        const std::int64_t bytes = (count - x) / kLinePixels * kLineBytes;
        if (isStreamed) {
            Lines<true>(spans.From(4 * x), bytes);
        } else {
            Lines<false>(spans.From(4 * x), bytes);
        }
        x += bytes / 4;
        if (x < count) Block(spans.From(4 * x), count - x);
    }

    /// Fewer pixels than a line has: through a copied line.
    void Block(const Spans& spans, std::int64_t count) const {
        alignas(kLineBytes) std::uint8_t copy[4][kLineBytes] = {};
        const auto bytes = static_cast<std::size_t>(4 * count);
        __builtin_memcpy(copy[0], spans.source, bytes);
        if (hasFill) __builtin_memcpy(copy[1], spans.fill, bytes);
        if (Mix::readsMask) __builtin_memcpy(copy[2], spans.mask, bytes);
        Lines<false>({copy[0], copy[1], copy[2], copy[3]}, kLineBytes);
        __builtin_memcpy(spans.destination, copy[3], bytes);
    }

    /// Whole lines. `flatten`: formulas are inlined however long they are.
    template <bool isStreamed>
    [[gnu::flatten, gnu::noinline]] void Lines(Spans spans, std::int64_t bytes) const {
        // Local copies: the stores below may alias the originals.
        const Applied<Formula> apply = apply_;
        const Mix mix = mix_;
        const U8 fourth = fourth_;
        for (std::int64_t at = 0; at < bytes; at += kLineBytes) {
            Prefetch<isStreamed>(spans, at + kPrefetchBytes);
            for (int i = 0; i < kLineBytes; i += kVectorBytes) {
                const U8 source = Load<U8>(spans.source + at + i);
                const U8 result = Result(apply, source, LoadIf<hasFill>(spans.fill, at + i));
                const U8 mixed = mix(source, LoadIf<Mix::readsMask>(spans.mask, at + i), result);
                Put<isStreamed>(spans.destination + at + i, (source & fourth) | (mixed & ~fourth));
            }
        }
    }

    /// The vector at a byte of a role, when the loop has that role.
    template <bool isThere>
    static U8 LoadIf(const std::uint8_t* bytes, std::int64_t at) {
        if constexpr (isThere) return Load<U8>(bytes + at);
        return U8{};
    }

    template <class Apply>
    static U8 Result(const Apply& apply, U8 source, U8 fill) {
        if constexpr (hasFill) {
            return apply(source, fill);
        } else {
            return apply(source);
        }
    }

    template <bool isStreamed>
    static void Prefetch(const Spans& spans, std::int64_t at) {
        __builtin_prefetch(spans.source + at);
        if constexpr (hasFill) __builtin_prefetch(spans.fill + at);
        if constexpr (Mix::readsMask) __builtin_prefetch(spans.mask + at);
        if constexpr (!isStreamed) __builtin_prefetch(spans.destination + at, 1);
    }

    template <bool isStreamed>
    static void Put(std::uint8_t* destination, U8 pixels) {
        if constexpr (isStreamed) {
            Stream(destination, pixels);
        } else {
            Store(destination, pixels);
        }
    }

    // ---- Pixels of 3 bytes --------------------------------------------------------------------------------------

    /// Whether bytes can be worked on as they lie, whichever pixels they belong to.
    static constexpr bool kTakesBytes = std::is_same_v<typename Formula::Kind, ByChannel> && !Mix::readsMask;
    static constexpr bool kTakesTriples = kTakesBytes || kHasTriplePermutation;
    static constexpr std::int64_t kTriplesBytes = std::int64_t{3} * kVectorBytes;
    static constexpr std::int64_t kTriplesPixels = kVectorBytes;

    void Triples(const Spans& spans, std::int64_t count) const {
        std::int64_t x = isStreamed_ || count >= kLongRow ? PixelsToLine(spans.destination, 3) : 0;
        if (x > count) x = count;
        for (std::int64_t first = 0; first < x; first += kTriplesPixels) {
            TripleBlock(spans.From(3 * first), x - first < kTriplesPixels ? x - first : kTriplesPixels);
        }
        const std::int64_t whole = (count - x) / kTriplesPixels;
        if (isStreamed_) {
            TripleLines<true>(spans.From(3 * x), whole * kTriplesBytes);
        } else {
            TripleLines<false>(spans.From(3 * x), whole * kTriplesBytes);
        }
        x += whole * kTriplesPixels;
        if (x < count) TripleBlock(spans.From(3 * x), count - x);
    }

    void TripleBlock(const Spans& spans, std::int64_t count) const {
        alignas(kLineBytes) std::uint8_t copy[4][kTriplesBytes] = {};
        const auto bytes = static_cast<std::size_t>(3 * count);
        __builtin_memcpy(copy[0], spans.source, bytes);
        if (hasFill) __builtin_memcpy(copy[1], spans.fill, bytes);
        if (Mix::readsMask) __builtin_memcpy(copy[2], spans.mask, bytes);
        TripleLines<false>({copy[0], copy[1], copy[2], copy[3]}, kTriplesBytes);
        if constexpr (kTriplesBytes > kLineBytes) {
            CopyOut(copy[3], spans.destination, 3 * count);
        } else {
            __builtin_memcpy(spans.destination, copy[3], bytes);
        }
    }

    template <bool isStreamed>
    [[gnu::flatten, gnu::noinline]] void TripleLines(Spans spans, std::int64_t bytes) const {
        const Mix mix = mix_;
        const auto prefetch = [&spans](std::int64_t at) {
            for (int i = 0; i < kTriplesBytes; i += kLineBytes) Prefetch<isStreamed>(spans, at + i + kPrefetchBytes);
        };
        if constexpr (kTakesBytes) {
            const Formula formula = formula_;
            const Lanes lanes[3] = {LanesOfTriples(settings_.format, 0), LanesOfTriples(settings_.format, 1),
                                    LanesOfTriples(settings_.format, 2)};
            const auto step = [&](const Lanes& lanes, std::int64_t at) {
                const auto apply = [&](U8 source, auto... fill) {
                    return ApplyToBytes(formula, lanes, source, fill...);
                };
                const U8 source = Load<U8>(spans.source + at);
                const U8 result = Result(apply, source, LoadIf<hasFill>(spans.fill, at));
                Put<isStreamed>(spans.destination + at, mix(source, U8{}, result));
            };
            for (std::int64_t at = 0; at < bytes; at += kTriplesBytes) {
                prefetch(at);
                step(lanes[0], at);
                step(lanes[1], at + kVectorBytes);
                step(lanes[2], at + std::int64_t{2} * kVectorBytes);
            }
        } else {
#if defined(OMBRIX_HAS_BYTE_PERMUTATION)
            const Applied<Formula> apply = apply_;
            const TriplePermutation permutation(settings_.format);
            for (std::int64_t at = 0; at < bytes; at += kTriplesBytes) {
                prefetch(at);
                U8 source[4], fill[4] = {}, mask[4] = {}, result[4], triples[3];
                permutation.Widen(spans.source + at, source);
                if constexpr (hasFill) permutation.Widen(spans.fill + at, fill);
                if constexpr (Mix::readsMask) permutation.Widen(spans.mask + at, mask);
                for (int i = 0; i < 4; ++i) result[i] = mix(source[i], mask[i], Result(apply, source[i], fill[i]));
                permutation.Narrow(result, triples);
                for (std::int64_t i = 0; i < 3; ++i) {
                    Put<isStreamed>(spans.destination + at + i * kVectorBytes, triples[i]);
                }
            }
#endif
        }
    }

    // ---- Any depths: pixels of 3 bytes pass through buffers of 4 ----------------------------------------------------

    static constexpr std::int64_t kChunk = 256;  // pixels: few, so that the buffers stay in the nearest cache

    void Chunks() const {
        const DepthChange change(settings_.format);
        const int bytesPerPixel = row_.source.bytesPerPixel;
        alignas(kLineBytes) std::uint8_t buffers[4][4 * kChunk];
        alignas(kLineBytes) std::uint8_t triples[3 * kChunk + DepthChange::kSlack];
        std::int64_t count = isStreamed_ ? PixelsToLine(row_.destination, bytesPerPixel) : 0;
        if (count == 0) count = kChunk;
        for (std::int64_t x = 0; x < row_.count; x += count, count = kChunk) {
            if (count > row_.count - x) count = row_.count - x;
            const auto words = [&](const PixelRow& row, std::uint8_t* buffer) -> const std::uint8_t* {
                if (!row.pixels) return nullptr;
                if (row.bytesPerPixel == 4) return row.pixels + 4 * x;
                change.Widen(row.pixels + 3 * x, buffer, count);
                return buffer;
            };
            std::uint8_t* const destination = row_.destination + bytesPerPixel * x;
            const Spans spans{words(row_.source, buffers[0]), words(row_.fill, buffers[1]),
                              words(row_.mask, buffers[2]), bytesPerPixel == 4 ? destination : buffers[3]};
            if (bytesPerPixel == 4) {
                Words(spans, count, isStreamed_);
            } else {
                Words(spans, count, false);
                change.Narrow(buffers[3], triples, count);
                CopyOut(triples, destination, 3 * count);
            }
        }
    }

    /// Copies results from a buffer to the destination; only whole lines go past the caches.
    void CopyOut(const std::uint8_t* from, std::uint8_t* to, std::int64_t bytes) const {
        std::int64_t at = 0;
        if (isStreamed_) {
            at = static_cast<std::int64_t>(-reinterpret_cast<std::uintptr_t>(to) % kLineBytes);
            if (at > bytes) at = bytes;
            __builtin_memcpy(to, from, static_cast<std::size_t>(at));
            for (; at + kLineBytes <= bytes; at += kLineBytes) {
                for (int i = 0; i < kLineBytes; i += kVectorBytes) Stream(to + at + i, Load<U8>(from + at + i));
            }
        }
        __builtin_memcpy(to + at, from + at, static_cast<std::size_t>(bytes - at));
    }

    // -----------------------------------------------------------------------------------------------------------------

    /// Pixels to process before the destination is aligned to a cache line.
    static std::int64_t PixelsToLine(const std::uint8_t* destination, int bytesPerPixel) {
        const auto missing = static_cast<std::int64_t>(-reinterpret_cast<std::uintptr_t>(destination) % kLineBytes);
        if (bytesPerPixel == 4) return missing / 4;
        return missing * 43 % kLineBytes;  // 3 * 43 is 1 modulo 64
    }

    const Row& row_;
    const RowSettings& settings_;
    bool isStreamed_;
    Formula formula_;
    Applied<Formula> apply_;
    Mix mix_;
    U8 fourth_;
};

/// The loop of a formula with a mix.
template <class Formula, class Mix, bool hasFill>
void RunRow(const Row& row, const RowSettings& settings) {
    if (row.count > 0) RowRun<Formula, Mix, hasFill>(row, settings).Run();
}

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
