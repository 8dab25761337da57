// The probes of one level. Compiled once for each.
#include "blend/colour_spaces.h"
#include "pixels/row_loop.h"
#include "tests/pixels/level_probes.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {
namespace {

struct HlsOfColour : ByColour {
    template <class V>
    Rgb<V> operator()(Rgb<V> s) const {
        const Hls<V> colour = ToHls(s);
        return {colour.hue, colour.lightness, colour.saturation};
    }
};

struct ColourOfHls : ByColour {
    template <class V>
    Rgb<V> operator()(Rgb<V> s) const {
        return ToRgb(Hls<V>{s.red, s.green, s.blue});
    }
};

template <class V>
bool AreSame(V a, V b) {
    return __builtin_memcmp(&a, &b, sizeof a) == 0;
}

const char* DifferingOperation() {
    U16 steps{};
    for (int i = 0; i < kVectorBytes / 2; ++i) steps[i] = static_cast<std::uint16_t>(i);
    for (int i = 0; i < 1 << 16; i += kVectorBytes / 2) {
        const U16 a = steps + static_cast<std::uint16_t>(i);
        for (int j = 0; j < 1 << 16; j += j < 256 ? 1 : 509) {
            const U16 b = U16{} + static_cast<std::uint16_t>(j);
            if (!AreSame(HighProduct(a, b), plain::HighProduct(a, b))) return "HighProduct";
            const U16 small = a & 0x7fff;
            const U16 factors = (b & 0x7fff) - (steps & 1 & b);
            if (!AreSame(PairSums(small, factors), plain::PairSums(small, factors))) return "PairSums";
        }
    }
    for (int lane = 0; lane < kVectorPixels; ++lane) {
        for (int bit = 0; bit < 32; ++bit) {
            I32 one{};
            one[lane] = static_cast<std::int32_t>(1u << bit);
            if (!Any(one) || !plain::Any(one) || Any(one & 0)) return "Any";
        }
    }
    const std::uint32_t bits[8] = {0x80000001, 0x12345678, 0, 0xffffffff, 0x0f0f0f0f, 7, 0xdeadbeef, 0x40000000};
    [[maybe_unused]] std::uint8_t bytes[256];
    for (int i = 0; i < 256; ++i) bytes[i] = static_cast<std::uint8_t>(i * 167 + 13);
    for (int i = 0; i < 256; ++i) {
        I32 index;
        for (int lane = 0; lane < kVectorPixels; ++lane) index[lane] = (i + 37 * lane) % 256;
        if (!AreSame(BitsOf(bits, index), plain::BitsOf(bits, index))) return "BitsOf";
#if defined(OMBRIX_HAS_BYTE_PERMUTATION)
        U8 places;
        for (int lane = 0; lane < kVectorBytes; ++lane) places[lane] = static_cast<std::uint8_t>(i + 37 * lane);
        const U8 found = LookUp(Table(bytes), places);
        for (int lane = 0; lane < kVectorBytes; ++lane) {
            if (found[lane] != bytes[places[lane]]) return "LookUp";
        }
#endif
    }
    for (int i = 1; i <= 255 * 255; ++i) {
        const F32 x = F32{} + static_cast<float>(i);
        const double error = static_cast<double>(Reciprocal(x)[0]) * i - 1.0;
        if (error > 0x1p-20 || error < -0x1p-20) return "Reciprocal";
    }
    return "";
}

}  // namespace

extern const testing::LevelProbes kProbes;
const testing::LevelProbes kProbes{DifferingOperation, RunRow<HlsOfColour, NoMix, false>,
                                   RunRow<ColourOfHls, NoMix, false>};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
