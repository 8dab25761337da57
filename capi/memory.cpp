#include "capi/memory.h"

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <new>
#include <unordered_map>

#include "capi/session.h"
#include "ombrix/rows.h"

namespace ombrix::capi {
namespace {

constexpr std::size_t kLarge = std::size_t{1} << 20;  // bytes, from which fresh pages take long

std::mutex mutex;

/// Given out. Never destroyed: programs may free to the very end.
std::unordered_map<void*, std::shared_ptr<void>>& Given() {
    static auto& given = *new std::unordered_map<void*, std::shared_ptr<void>>;
    return given;
}

}  // namespace

void GiveBack::operator()(void* memory) const noexcept {
    if (memory == nullptr) return;
    // A thread that is not in the child may have been in here.
    if (IsForked()) return;
    std::shared_ptr<void> large;
    {
        const std::lock_guard guard(mutex);
        const auto found = Given().find(memory);
        if (found != Given().end()) {
            large = std::move(found->second);
            Given().erase(found);
        }
    }
    if (!large) std::free(memory);
}

Memory NewMemory(std::size_t bytes) {
    if (bytes < kLarge) {
        Memory memory(std::malloc(std::max<std::size_t>(bytes, 1)));
        if (!memory) throw std::bad_alloc();
        return memory;
    }
    std::shared_ptr<void> large = host::NewRowMemory(bytes);
    if (!large) throw std::bad_alloc();
    void* memory = large.get();
    const std::lock_guard guard(mutex);
    Given().emplace(memory, std::move(large));
    return Memory(memory);
}

}  // namespace ombrix::capi
