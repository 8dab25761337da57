// Which channel the lanes of a vector belong to.
#pragma once

#include "pixels/formula.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// Bytes as 16-bit numbers: the lower and the upper byte of each unit.
inline U16 LowerBytes(U8 bytes) { return reinterpret_cast<U16>(bytes) & 0xff; }
inline U16 UpperBytes(U8 bytes) { return reinterpret_cast<U16>(bytes) >> 8; }
/// Puts them together again; all are from 0 to 255.
inline U8 Bytes(U16 lower, U16 upper) { return reinterpret_cast<U8>(lower | upper << 8); }

/// The channels of one vector of pixels, for its bytes and for both halves of its 16-bit units.
struct Lanes {
    Channels<U8> ofBytes;
    Channels<U16> ofLower;
    Channels<U16> ofUpper;

    explicit Lanes(Channels<U8> channels)
        : ofBytes(channels),
          ofLower{Whole(LowerBytes(channels.red)), Whole(LowerBytes(channels.green)), Whole(LowerBytes(channels.blue))},
          ofUpper{Whole(UpperBytes(channels.red)), Whole(UpperBytes(channels.green)),
                  Whole(UpperBytes(channels.blue))} {}

  private:
    /// Copies the lower byte of each lane to the upper.
    static U16 Whole(U16 lower) { return lower | lower << 8; }
};

/// All bits of one byte of each pixel of 4.
inline U8 ByteOfWords(int byte) { return reinterpret_cast<U8>(U32{} + (std::uint32_t{0xff} << 8 * byte)); }

/// Of pixels of 4 bytes.
inline Lanes LanesOfWords(const PixelFormat& format) {
    return Lanes({ByteOfWords(format.red), ByteOfWords(format.green), ByteOfWords(format.blue)});
}

/// The same for pixels of 3 bytes, whose pattern repeats every three vectors; `vector` is 0, 1 or 2.
inline Lanes LanesOfTriples(const PixelFormat& format, int vector) {
    static constexpr auto everyThird = [] {
        struct {
            std::uint8_t bytes[kVectorBytes + 2];
        } pattern{};
        for (int i = 0; i < kVectorBytes + 2; i += 3) pattern.bytes[i] = 0xff;
        return pattern;
    }();
    const auto lanes = [&format, vector](int position) {
        const int byte = position - (position > format.fourth);
        return Load<U8>(everyThird.bytes + (3 - byte + vector * kVectorBytes) % 3);
    };
    return Lanes({lanes(format.red), lanes(format.green), lanes(format.blue)});
}

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
