// Between pixels of 3 bytes and pixels of 4.
#pragma once

#include <array>
#include <cstdint>

namespace ombrix {

/// A pixel of 3 bytes is one of 4 without the byte at NULL_PIX, the others closing up.
class DepthChange {
  public:
    /// The position is read from the process-wide variable: make one per row, not per pixel.
    DepthChange();

    /// For each byte of four pixels of one kind, its place in four of the other; kNone gives 0.
    using Order = std::array<std::uint8_t, 16>;
    static constexpr std::uint8_t kNone = 0x80;

    /// Reads 3 * count bytes and writes 4 * count; fourth bytes become 0.
    void Widen(const std::uint8_t* from, std::uint8_t* to, std::int64_t count) const;

    /// Reads 4 * count bytes and writes 3 * count; fourth bytes are lost.
    void Narrow(const std::uint8_t* from, std::uint8_t* to, std::int64_t count) const;

  private:
    std::uint32_t Widened(std::uint32_t word) const { return (word & below_) | ((word & ~below_ & 0xffffff) << 8); }
    std::uint32_t Narrowed(std::uint32_t word) const { return (word & below_) | (word >> 8 & ~below_); }

    std::uint32_t below_;  ///< the bits of the channels that lie before the fourth byte
    Order widening_;
    Order narrowing_;
};

}  // namespace ombrix
