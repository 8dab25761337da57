// What loops over pixels get to see: buffers whose pixels all have four bytes. The walk over rows brings them into this
// form, whatever the pictures' depths are.
#pragma once

#include <cstdint>

namespace ombrix {

/// Pixels of four bytes side by side. The destination may be the source; a role that there is none for is null.
struct WordPixels {
    const std::uint8_t* source;
    const std::uint8_t* fill;
    const std::uint8_t* mask;
    std::uint8_t* destination;
    std::int64_t count;  ///< at least 1
};

/// A loop over pixels. It writes the colours and the fourth bytes of all; `formula` is of the type that it was made
/// for.
using WordLoop = void (*)(const void* formula, const WordPixels& pixels);

/// Such a loop with its formula, or none.
struct WordKernel {
    WordLoop run = nullptr;
    const void* formula = nullptr;

    void operator()(const WordPixels& pixels) const { run(formula, pixels); }
    explicit operator bool() const { return run != nullptr; }
};

}  // namespace ombrix
