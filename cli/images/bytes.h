// Bytes of files.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace ombrix::cli {

using Bytes = std::vector<std::uint8_t>;

/// A number of `size` bytes. The bytes must be there.
std::uint64_t GetNumber(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t size, bool littleEndian);
void PutNumber(std::span<std::uint8_t> bytes, std::size_t at, std::size_t size, bool littleEndian,
               std::uint64_t number);

bool StandsAt(std::span<const std::uint8_t> bytes, std::size_t at, std::string_view text);

}  // namespace ombrix::cli
