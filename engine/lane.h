// Arithmetic on the bytes of pixels in 16 bits, where one instruction of a vector unit works on most of them at once.
//
// The bytes are taken as they lie, two to a unit of 16 bits: neither are channels shifted out of words nor words put
// together again. What this cannot do is look at another channel of the same pixel.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "engine/pixel.h"

namespace ombrix {

/// A whole number modulo 65536. Formulas of channels that keep every step between 0 and 65535 may be written for either
/// `int` or `Lane`, and give the same; `int` is what the arithmetic of C++ would make of 16 bits.
class Lane {
  public:
    constexpr Lane(int value) : value_(static_cast<std::uint16_t>(value)) {}  // NOLINT: literals are lanes too
    constexpr std::uint16_t Bits() const { return value_; }

    friend constexpr Lane operator+(Lane a, Lane b) { return {a.value_ + b.value_}; }
    friend constexpr Lane operator-(Lane a, Lane b) { return {a.value_ - b.value_}; }
    friend constexpr Lane operator*(Lane a, Lane b) { return Cut(std::uint32_t{a.value_} * b.value_); }
    friend constexpr Lane operator/(Lane a, int divisor) {
        return {static_cast<std::uint16_t>(a.value_ / static_cast<std::uint16_t>(divisor))};
    }
    friend constexpr Lane operator>>(Lane a, int bits) { return {a.value_ >> bits}; }
    friend constexpr Lane operator<<(Lane a, int bits) { return Cut(std::uint32_t{a.value_} << bits); }
    friend constexpr bool operator<(Lane a, Lane b) { return a.value_ < b.value_; }

  private:
    static constexpr Lane Cut(std::uint32_t value) { return {static_cast<std::uint16_t>(value)}; }
    std::uint16_t value_;
};

constexpr Lane Min(Lane a, Lane b) { return {std::min(a.Bits(), b.Bits())}; }
constexpr Lane Max(Lane a, Lane b) { return {std::max(a.Bits(), b.Bits())}; }
constexpr int Min(int a, int b) { return std::min(a, b); }
constexpr int Max(int a, int b) { return std::max(a, b); }

/// 0, which compilers do not know.
extern const std::uint16_t kHiddenZero;

/// The upper 16 bits of a product of 32: `a * b >> 16` without room for the product. g++ makes the one instruction for
/// it of operands that are 16 bits for all it can tell; where it knows what they come from it multiplies in 32 bits,
/// and power light takes half as long again.
inline Lane HighProduct(Lane a, Lane b) {
    const auto unknown = [](Lane value) { return static_cast<std::uint16_t>(value.Bits() + kHiddenZero); };
    return {static_cast<std::uint16_t>(std::uint32_t{unknown(a)} * std::uint32_t{unknown(b)} >> 16)};
}
constexpr int HighProduct(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b) >> 16);
}

/// `a - b`, but not below 0.
template <class Value>
constexpr Value DifferenceFromZero(Value a, Value b) {
    return Max(a, b) - b;
}

/// Pixels are worked on in blocks of as many bytes as the widest vectors have.
constexpr int kBlockBytes = 64;
constexpr int kBlockUnits = kBlockBytes / 2;
constexpr int kBlockPixels = kBlockBytes / 4;

/// Which byte of a block: that of the lower or upper half of which unit.
struct Place {
    int half;
    std::ptrdiff_t unit;
};

/// A number for each byte of a block. Constants of formulas are kept like this, also where all are the same: g++ makes
/// the instruction for HighProduct of two loads only.
class BlockConstants {
  public:
    /// `ofByte` holds a number for each byte of a pixel in memory.
    explicit BlockConstants(const std::array<int, 4>& ofByte) {
        for (int half = 0; half < 2; ++half) {
            for (std::ptrdiff_t unit = 0; unit < kBlockUnits; ++unit) {
                values_[half][unit] = static_cast<std::uint16_t>(ofByte[(2 * unit + half) % 4]);
            }
        }
    }
    explicit BlockConstants(int ofAll) : BlockConstants({ofAll, ofAll, ofAll, ofAll}) {}

    Lane At(Place place) const { return {values_[place.half][place.unit]}; }

  private:
    alignas(kBlockBytes) std::uint16_t values_[2][kBlockUnits];
};

/// The same in 8 bits, for arithmetic that never leaves the bytes' range: twice as many fit into a vector.
class BlockBytes {
  public:
    /// `ofByte` holds a number from 0 to 255 for each byte of a pixel in memory.
    explicit BlockBytes(const std::array<int, 4>& ofByte) {
        for (std::size_t i = 0; i < kBlockBytes; ++i) values_[i] = static_cast<std::uint8_t>(ofByte[i % 4]);
    }

    /// That of a byte of the block.
    std::uint8_t operator[](std::size_t byte) const { return values_[byte]; }

  private:
    alignas(kBlockBytes) std::uint8_t values_[kBlockBytes];
};

inline std::uint16_t LoadUnit(const std::uint8_t* bytes) {
    std::uint16_t unit;
    std::memcpy(&unit, bytes, sizeof unit);
    return unit;
}

inline void StoreUnit(std::uint8_t* bytes, std::uint16_t unit) { std::memcpy(bytes, &unit, sizeof unit); }

inline Lane LowerByte(std::uint16_t unit) { return {unit & 0xff}; }
inline Lane UpperByte(std::uint16_t unit) { return {unit >> 8}; }
/// A byte of a block.
inline Lane ByteAt(const std::uint8_t* block, Place place) {
    const std::uint16_t unit = LoadUnit(block + 2 * place.unit);
    return place.half == 0 ? LowerByte(unit) : UpperByte(unit);
}

inline std::uint16_t UnitOf(Lane lower, Lane upper) {
    return static_cast<std::uint16_t>(lower.Bits() | upper.Bits() << 8);
}

}  // namespace ombrix
