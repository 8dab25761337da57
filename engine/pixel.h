// A colour, and how it lies in the bytes of a pixel.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "frame/process_state.h"

namespace ombrix {

/// A colour of three channels. Formulas take and give Rgb<int>: 0 to 255 in each channel.
template <class T>
struct Rgb {
    T red;
    T green;
    T blue;
};

/// A formula's value as the byte that is stored: saturates at 0 and 255.
constexpr int ClampToByte(int value) { return std::min(std::max(value, 0), 255); }

/// Where the channels of a pixel of 4 bytes lie in its word: those at RED_PIX, GREEN_PIX and BLUE_PIX, and the fourth
/// byte at NULL_PIX. Compilers turn loops over words into vector code, whatever the positions are.
struct WordFormat {
    static_assert(std::endian::native == std::endian::little, "byte n of a pixel is bits 8n to 8n + 7 of its word");

    /// The positions are read from the process-wide variables: make one per row, not per pixel.
    WordFormat() : red(8 * RED_PIX), green(8 * GREEN_PIX), blue(8 * BLUE_PIX), fourthMask(0xffu << 8 * NULL_PIX) {}

    int red;  ///< shifts
    int green;
    int blue;
    std::uint32_t fourthMask;

    /// A function of each channel's number in the order of the bytes of a pixel; 0 for the fourth.
    template <class Function>
    std::array<int, 4> InMemory(Rgb<int> channels, Function function) const {
        std::array<int, 4> bytes{};
        bytes[red / 8] = function(channels.red);
        bytes[green / 8] = function(channels.green);
        bytes[blue / 8] = function(channels.blue);
        return bytes;
    }
};

inline std::uint32_t LoadWord(const std::uint8_t* pixel) {
    std::uint32_t word;
    std::memcpy(&word, pixel, sizeof word);
    return word;
}

inline void StoreWord(std::uint8_t* pixel, std::uint32_t word) { std::memcpy(pixel, &word, sizeof word); }

inline Rgb<int> ColourOf(std::uint32_t word, const WordFormat& format) {
    return {static_cast<int>(word >> format.red & 0xff), static_cast<int>(word >> format.green & 0xff),
            static_cast<int>(word >> format.blue & 0xff)};
}

inline std::uint32_t WordOf(Rgb<int> colour, const WordFormat& format) {
    return static_cast<std::uint32_t>(colour.red) << format.red |
           static_cast<std::uint32_t>(colour.green) << format.green |
           static_cast<std::uint32_t>(colour.blue) << format.blue;
}

}  // namespace ombrix
