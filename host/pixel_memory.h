// Memory for pixels. Large blocks are kept for the next picture: getting fresh pages from the system takes as long as
// an effect takes to fill them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace ombrix::host {

enum class Content {
    Zeros,
    Any,  ///< for writers of every byte that they read
};

struct GiveBackPixelMemory {
    std::size_t bytes = 0;
    void operator()(std::uint8_t* memory) const;
};

/// Aligned to 64 bytes. Any thread may take and give back.
using PixelMemory = std::unique_ptr<std::uint8_t, GiveBackPixelMemory>;

/// Null without memory. Keeps as much as is in use, or 64 MiB if that is more.
PixelMemory TakePixelMemory(std::size_t bytes, Content content);

}  // namespace ombrix::host
