#include "host/row_formats.h"

#include <bit>
#include <cstring>

// A function inlined into one for newer processors has to be without a frame of its own.
#define OMBRIX_INLINE inline __attribute__((always_inline))

namespace ombrix::host {
namespace {

static_assert(std::endian::native == std::endian::little, "pixels are taken as words, alpha in the lowest byte");

template <class Element, int kBytes>
using Vector __attribute__((vector_size(kBytes))) = Element;

constexpr std::size_t kWords = 8;
using Words = Vector<std::uint32_t, 32>;
using Floats = Vector<float, 32>;
using Ints = Vector<std::int32_t, 32>;
using Bytes = Vector<std::uint8_t, 16>;

template <class T>
OMBRIX_INLINE T Load(const std::uint8_t* from) {
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

template <class T>
OMBRIX_INLINE void Store(std::uint8_t* to, const T& value) {
    std::memcpy(to, &value, sizeof value);
}

// ---- Four bytes, as words. `W` is a word or a vector of words. ---------------------------------------------------

template <class W>
OMBRIX_INLINE W SwapSecondAndFourth(W argb) {
    return (argb & 0x00ff00ffu) | (argb << 16 & 0xff000000u) | (argb >> 16 & 0x0000ff00u);
}

template <Layout kLayout, class W>
OMBRIX_INLINE W ToArgb(W pixel) {
    if constexpr (kLayout == Layout::Rgba || kLayout == Layout::Bgra) pixel = pixel << 8 | pixel >> 24;
    if constexpr (kLayout == Layout::Bgra || kLayout == Layout::Abgr) pixel = SwapSecondAndFourth(pixel);
    return pixel;
}

template <Layout kLayout, class W>
OMBRIX_INLINE W FromArgb(W pixel) {
    if constexpr (kLayout == Layout::Bgra || kLayout == Layout::Abgr) pixel = SwapSecondAndFourth(pixel);
    if constexpr (kLayout == Layout::Rgba || kLayout == Layout::Bgra) pixel = pixel >> 8 | pixel << 24;
    return pixel;
}

template <Layout kLayout>
OMBRIX_INLINE void DecodeFour(const std::uint8_t* pixels, std::size_t length, std::uint8_t* argb) {
    std::size_t i = 0;
    for (; i + kWords <= length; i += kWords) Store(argb + 4 * i, ToArgb<kLayout>(Load<Words>(pixels + 4 * i)));
    for (; i < length; ++i) Store(argb + 4 * i, ToArgb<kLayout>(Load<std::uint32_t>(pixels + 4 * i)));
}

template <Layout kLayout>
OMBRIX_INLINE void EncodeFour(const std::uint8_t* argb, std::size_t length, std::uint8_t* pixels) {
    std::size_t i = 0;
    for (; i + kWords <= length; i += kWords) Store(pixels + 4 * i, FromArgb<kLayout>(Load<Words>(argb + 4 * i)));
    for (; i < length; ++i) Store(pixels + 4 * i, FromArgb<kLayout>(Load<std::uint32_t>(argb + 4 * i)));
}

// ---- Three bytes, four pixels at a time --------------------------------------------------------------------------

constexpr std::size_t kPixelsOf16 = 6;  ///< the fewest pixels whose 18 bytes hold a load or a store of 16

/// `kRed` and `kBlue` are the channels' positions in a pixel.
template <bool kHasShuffles, int kRed, int kBlue>
OMBRIX_INLINE void DecodeThree(const std::uint8_t* pixels, std::size_t length, std::uint8_t* argb) {
    std::size_t i = 0;
    if constexpr (kHasShuffles) {
        constexpr Bytes kOpaque = {255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0};
        constexpr int r = kRed, b = kBlue;
        for (; i + kPixelsOf16 <= length; i += 4) {
            const auto from = Load<Bytes>(pixels + 3 * i);
            const Bytes spread = __builtin_shufflevector(from, Bytes{}, 16, r, 1, b, 16, 3 + r, 4, 3 + b, 16, 6 + r, 7,
                                                         6 + b, 16, 9 + r, 10, 9 + b);
            Store(argb + 4 * i, spread | kOpaque);
        }
    }
    for (; i < length; ++i) {
        const std::uint8_t* pixel = pixels + 3 * i;
        Store(argb + 4 * i, std::uint32_t{255} | std::uint32_t{pixel[kRed]} << 8 | std::uint32_t{pixel[1]} << 16 |
                                std::uint32_t{pixel[kBlue]} << 24);
    }
}

template <bool kHasShuffles, int kRed, int kBlue>
OMBRIX_INLINE void EncodeThree(const std::uint8_t* argb, std::size_t length, std::uint8_t* pixels) {
    std::size_t i = 0;
    if constexpr (kHasShuffles) {
        constexpr int r = kRed == 0 ? 1 : 3, b = kBlue == 0 ? 1 : 3;
        for (; i + kPixelsOf16 <= length; i += 4) {
            const auto from = Load<Bytes>(argb + 4 * i);
            // The last four bytes are those of the next pixels, which are stored later.
            Store(pixels + 3 * i, __builtin_shufflevector(from, from, r, 2, b, 4 + r, 6, 4 + b, 8 + r, 10, 8 + b,
                                                          12 + r, 14, 12 + b, 0, 0, 0, 0));
        }
    }
    for (; i < length; ++i) {
        const auto pixel = Load<std::uint32_t>(argb + 4 * i);
        pixels[3 * i + kRed] = static_cast<std::uint8_t>(pixel >> 8);
        pixels[3 * i + 1] = static_cast<std::uint8_t>(pixel >> 16);
        pixels[3 * i + kBlue] = static_cast<std::uint8_t>(pixel >> 24);
    }
}

// ---- Greys -------------------------------------------------------------------------------------------------------

template <bool kHasShuffles>
OMBRIX_INLINE void DecodeGrey(const std::uint8_t* greys, std::size_t length, std::uint8_t* argb) {
    std::size_t i = 0;
    if constexpr (kHasShuffles) {
        constexpr Bytes kOpaque = {255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0};
        for (; i + 16 <= length; i += 16) {
            const auto from = Load<Bytes>(greys + i);
            std::uint8_t* const to = argb + 4 * i;
            Store(to, __builtin_shufflevector(from, from, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3) | kOpaque);
            Store(to + 16,
                  __builtin_shufflevector(from, from, 4, 4, 4, 4, 5, 5, 5, 5, 6, 6, 6, 6, 7, 7, 7, 7) | kOpaque);
            Store(to + 32, __builtin_shufflevector(from, from, 8, 8, 8, 8, 9, 9, 9, 9, 10, 10, 10, 10, 11, 11, 11, 11) |
                               kOpaque);
            Store(to + 48,
                  __builtin_shufflevector(from, from, 12, 12, 12, 12, 13, 13, 13, 13, 14, 14, 14, 14, 15, 15, 15, 15) |
                      kOpaque);
        }
    }
    for (; i < length; ++i) Store(argb + 4 * i, greys[i] * 0x01010100u | 255);
}

template <class W>
OMBRIX_INLINE W Luma(W argb) {
    const W sum = (argb >> 8 & 255) * 299 + (argb >> 16 & 255) * 587 + (argb >> 24) * 114 + 500;
    // Divided by 1000: for sums up to 255500, 33555 / 2^22 is as good as 1 / 125.
    return (sum >> 3) * 33555 >> 22;
}

OMBRIX_INLINE void EncodeGrey(const std::uint8_t* argb, std::size_t length, std::uint8_t* greys) {
    std::size_t i = 0;
    for (; i + kWords <= length; i += kWords) {
        const Words luma = Luma(Load<Words>(argb + 4 * i));
        Store(greys + i, __builtin_convertvector(luma, Vector<std::uint8_t, kWords>));
    }
    for (; i < length; ++i) greys[i] = static_cast<std::uint8_t>(Luma(Load<std::uint32_t>(argb + 4 * i)));
}

// ---- Alpha -------------------------------------------------------------------------------------------------------

/// 255 * channel / alpha, rounded: quotients are at least 1/510 away from where rounding could go wrong. 0 where
/// `isThere` is.
OMBRIX_INLINE Words Divided(Words channel, Floats alpha, Words isThere) {
    const Floats quotient =
        __builtin_convertvector(__builtin_convertvector(channel * 255, Ints), Floats) / alpha + 0.5f;
    const Ints rounded = __builtin_convertvector(quotient, Ints);
    return reinterpret_cast<Words>(rounded > 255 ? Ints{} + 255 : rounded) & isThere;
}

/// channel * alpha / 255, rounded, for products of up to 255 * 255.
OMBRIX_INLINE Words Multiplied(Words channel, Words alpha) {
    const Words product = channel * alpha + 128;
    return (product + (product >> 8)) >> 8;
}

OMBRIX_INLINE Words Changed(Words pixel, AlphaStep step) {
    const Words alpha = pixel & 255;
    const Words red = pixel >> 8 & 255, green = pixel >> 16 & 255, blue = pixel >> 24;
    if (step == AlphaStep::Opaque) return pixel | 255;
    if (step == AlphaStep::Premultiply) {
        return alpha | Multiplied(red, alpha) << 8 | Multiplied(green, alpha) << 16 | Multiplied(blue, alpha) << 24;
    }
    const Words isThere = reinterpret_cast<Words>(alpha != 0);
    const Floats divisor = __builtin_convertvector(reinterpret_cast<Ints>(alpha | (~isThere & 1)), Floats);
    return alpha | Divided(red, divisor, isThere) << 8 | Divided(green, divisor, isThere) << 16 |
           Divided(blue, divisor, isThere) << 24;
}

template <AlphaStep kStep>
OMBRIX_INLINE void ChangeAll(std::uint8_t* argb, std::size_t length) {
    std::size_t i = 0;
    for (; i + kWords <= length; i += kWords) Store(argb + 4 * i, Changed(Load<Words>(argb + 4 * i), kStep));
    Words rest{};
    std::memcpy(&rest, argb + 4 * i, 4 * (length - i));
    rest = Changed(rest, kStep);
    std::memcpy(argb + 4 * i, &rest, 4 * (length - i));
}

// ---- For each kind of processor ----------------------------------------------------------------------------------

template <bool kHasShuffles>
OMBRIX_INLINE void DecodeOn(const std::uint8_t* pixels, Layout layout, std::size_t length, std::uint8_t* argb) {
    switch (layout) {
        case Layout::Grey:
            return DecodeGrey<kHasShuffles>(pixels, length, argb);
        case Layout::Rgb:
            return DecodeThree<kHasShuffles, 0, 2>(pixels, length, argb);
        case Layout::Bgr:
            return DecodeThree<kHasShuffles, 2, 0>(pixels, length, argb);
        case Layout::Rgba:
            return DecodeFour<Layout::Rgba>(pixels, length, argb);
        case Layout::Bgra:
            return DecodeFour<Layout::Bgra>(pixels, length, argb);
        case Layout::Abgr:
            return DecodeFour<Layout::Abgr>(pixels, length, argb);
        case Layout::Argb:
            std::memmove(argb, pixels, 4 * length);
    }
}

template <bool kHasShuffles>
OMBRIX_INLINE void EncodeOn(const std::uint8_t* argb, std::size_t length, Layout layout, std::uint8_t* pixels) {
    switch (layout) {
        case Layout::Grey:
            return EncodeGrey(argb, length, pixels);
        case Layout::Rgb:
            return EncodeThree<kHasShuffles, 0, 2>(argb, length, pixels);
        case Layout::Bgr:
            return EncodeThree<kHasShuffles, 2, 0>(argb, length, pixels);
        case Layout::Rgba:
            return EncodeFour<Layout::Rgba>(argb, length, pixels);
        case Layout::Bgra:
            return EncodeFour<Layout::Bgra>(argb, length, pixels);
        case Layout::Abgr:
            return EncodeFour<Layout::Abgr>(argb, length, pixels);
        case Layout::Argb:
            std::memmove(pixels, argb, 4 * length);
    }
}

OMBRIX_INLINE void ChangeOn(std::uint8_t* argb, std::size_t length, AlphaStep step) {
    if (step == AlphaStep::Opaque) ChangeAll<AlphaStep::Opaque>(argb, length);
    if (step == AlphaStep::Unpremultiply) ChangeAll<AlphaStep::Unpremultiply>(argb, length);
    if (step == AlphaStep::Premultiply) ChangeAll<AlphaStep::Premultiply>(argb, length);
}

#if defined(__aarch64__)
constexpr bool kPlainShuffles = true;
#else
constexpr bool kPlainShuffles = false;  // SSE2 shuffles no bytes
#endif

void Decode(const std::uint8_t* pixels, Layout layout, std::size_t length, std::uint8_t* argb) {
    DecodeOn<kPlainShuffles>(pixels, layout, length, argb);
}
void Encode(const std::uint8_t* argb, std::size_t length, Layout layout, std::uint8_t* pixels) {
    EncodeOn<kPlainShuffles>(argb, length, layout, pixels);
}
void Change(std::uint8_t* argb, std::size_t length, AlphaStep step) { ChangeOn(argb, length, step); }

#if defined(__x86_64__)
__attribute__((target("avx2"))) void DecodeV3(const std::uint8_t* pixels, Layout layout, std::size_t length,
                                              std::uint8_t* argb) {
    DecodeOn<true>(pixels, layout, length, argb);
}
__attribute__((target("avx2"))) void EncodeV3(const std::uint8_t* argb, std::size_t length, Layout layout,
                                              std::uint8_t* pixels) {
    EncodeOn<true>(argb, length, layout, pixels);
}
__attribute__((target("avx2"))) void ChangeV3(std::uint8_t* argb, std::size_t length, AlphaStep step) {
    ChangeOn(argb, length, step);
}
#endif

}  // namespace

const RowFormats& PlainRowFormats() {
    static constexpr RowFormats kPlain{Decode, Encode, Change};
    return kPlain;
}

const RowFormats& RowFormatsHere() {
#if defined(__x86_64__)
    static constexpr RowFormats kV3{DecodeV3, EncodeV3, ChangeV3};
    if (__builtin_cpu_supports("avx2")) return kV3;
#endif
    return PlainRowFormats();
}

}  // namespace ombrix::host
