// Memory for pixels. That of large pictures is kept for the next ones when it is given back: the system would take as
// long to hand out its pages anew as an effect takes to fill them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace ombrix::host {

enum class Content {
    Zeros,
    Any,  ///< for those who write every byte that they read
};

struct GiveBackPixelMemory {
    std::size_t bytes = 0;
    void operator()(std::uint8_t* memory) const;
};

/// Aligned to 64 bytes at least. Any thread may take and give back.
using PixelMemory = std::unique_ptr<std::uint8_t, GiveBackPixelMemory>;

/// Null without memory. What is kept is never more than what is in use, or 64 MiB.
PixelMemory TakePixelMemory(std::size_t bytes, Content content);

}  // namespace ombrix::host
