// Empties the caches, so that pictures come from memory.
#pragma once

#include <cstdint>
#include <vector>

namespace ombrix::bench {

/// Memory somewhat larger than all caches.
class ColdCaches {
  public:
    ColdCaches();

    /// Reads all of it: the caches hold nothing else then.
    void Evict() const;

  private:
    std::vector<std::uint8_t> memory_;
};

}  // namespace ombrix::bench
