// Memory that ombrix_free takes back.
#pragma once

#include <cstddef>
#include <memory>

namespace ombrix::capi {

struct GiveBack {
    void operator()(void* memory) const noexcept;
};
using Memory = std::unique_ptr<void, GiveBack>;

/// Holds anything. For any thread; throws std::bad_alloc without memory.
Memory NewMemory(std::size_t bytes);

}  // namespace ombrix::capi
