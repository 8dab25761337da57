#include "host/pixel_memory.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <vector>

namespace ombrix::host {
namespace {

constexpr std::size_t kAlignment = 64;                   // bytes
constexpr std::size_t kPage = 4096;                      // bytes, at least on common processors
constexpr std::size_t kLarge = std::size_t{1} << 17;     // the C library keeps smaller blocks
constexpr std::size_t kHuge = std::size_t{1} << 20;      // worth whole huge pages
constexpr std::size_t kHugePage = std::size_t{2} << 20;  // on processors whose huge pages have a useful size
constexpr std::size_t kAlwaysKept = std::size_t{64} << 20;

std::size_t RoundedUp(std::size_t bytes, std::size_t unit) { return (bytes + unit - 1) / unit * unit; }

/// From kHuge on whole huge pages: 500 times fewer page faults, and fewer misses down a column.
std::size_t LargeSize(std::size_t bytes) { return RoundedUp(bytes, bytes >= kHuge ? kHugePage : kPage); }

/// Pages of zeros, or null.
std::uint8_t* Map(std::size_t size) {
    if (size < kHuge) {
        void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return mapped == MAP_FAILED ? nullptr : static_cast<std::uint8_t*>(mapped);
    }
    const std::size_t reserved = size + kHugePage;
    void* mapped = mmap(nullptr, reserved, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) return nullptr;
    auto* const start = static_cast<std::uint8_t*>(mapped);
    const std::size_t before =
        RoundedUp(reinterpret_cast<std::uintptr_t>(start), kHugePage) - reinterpret_cast<std::uintptr_t>(start);
    if (before > 0) munmap(start, before);
    if (before < kHugePage) munmap(start + before + size, kHugePage - before);
#if defined(MADV_HUGEPAGE)
    madvise(start + before, size, MADV_HUGEPAGE);  // only a hint
#endif
    return start + before;
}

/// Counts the large blocks in use, and has those that are kept.
class Store {
  public:
    std::uint8_t* Take(std::size_t size, Content content) {
        std::uint8_t* memory = TakeKept(size);
        if (memory) {
            if (content == Content::Zeros) std::memset(memory, 0, size);
            return memory;
        }
        memory = Map(size);
        const std::lock_guard lock(mutex_);
        if (!memory) {
            Keep(0);  // it may be what is missing
            memory = Map(size);
        }
        if (memory) inUse_ += size;
        return memory;
    }

    void GiveBack(std::uint8_t* memory, std::size_t size) {
        const std::lock_guard lock(mutex_);
        inUse_ -= size;
        try {
            kept_.push_back({memory, size});
        } catch (const std::bad_alloc&) {
            munmap(memory, size);
            return;
        }
        keptBytes_ += size;
        Keep(std::max(inUse_, kAlwaysKept));
    }

  private:
    struct Block {
        std::uint8_t* memory;
        std::size_t size;
    };

    std::uint8_t* TakeKept(std::size_t size) {
        const std::lock_guard lock(mutex_);
        // The one given back last is most likely in a cache.
        const auto found =
            std::find_if(kept_.rbegin(), kept_.rend(), [size](const Block& block) { return block.size == size; });
        if (found == kept_.rend()) return nullptr;
        std::uint8_t* const memory = found->memory;
        kept_.erase(std::next(found).base());
        keptBytes_ -= size;
        inUse_ += size;
        return memory;
    }

    /// Frees the blocks kept longest until at most `most` bytes are kept.
    void Keep(std::size_t most) {
        auto first = kept_.begin();
        for (; keptBytes_ > most; ++first) {
            munmap(first->memory, first->size);
            keptBytes_ -= first->size;
        }
        kept_.erase(kept_.begin(), first);
    }

    std::mutex mutex_;
    std::vector<Block> kept_;  ///< oldest first
    std::size_t keptBytes_ = 0;
    std::size_t inUse_ = 0;
};

/// Never destroyed: static objects may hold pictures to the very end.
Store& TheStore() {
    static Store& store = *new Store;
    return store;
}

}  // namespace

PixelMemory TakePixelMemory(std::size_t bytes, Content content) {
    std::uint8_t* memory = nullptr;
    if (bytes >= kLarge) {
        memory = TheStore().Take(LargeSize(bytes), content);
    } else {
        const std::size_t size = std::max(RoundedUp(bytes, kAlignment), kAlignment);
        memory = static_cast<std::uint8_t*>(std::aligned_alloc(kAlignment, size));
        if (memory && content == Content::Zeros) std::memset(memory, 0, size);
    }
    return PixelMemory(memory, {bytes});
}

void GiveBackPixelMemory::operator()(std::uint8_t* memory) const {
    if (bytes >= kLarge) {
        TheStore().GiveBack(memory, LargeSize(bytes));
    } else {
        std::free(memory);
    }
}

}  // namespace ombrix::host
