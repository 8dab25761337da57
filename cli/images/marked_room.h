// Room in a file that a library writes, for bytes that it cannot write or that are known only in the end.
#pragma once

#include <optional>

#include "cli/images/tiff_directory.h"

namespace ombrix::cli {

/// Bytes that stand in the file in the meantime.
class MarkedRoom {
  public:
    /// At least kShortest bytes, and random, so that nothing else in the file can be taken for them.
    explicit MarkedRoom(std::size_t size);
    static constexpr std::size_t kShortest = 16;

    const Bytes& Mark() const { return mark_; }
    /// Where they begin in the file.
    std::optional<std::size_t> FindIn(std::span<const std::uint8_t> file) const;

  private:
    Bytes mark_;
};

}  // namespace ombrix::cli
