// Pictures that are not in the processor's caches, as those that were just loaded mostly are not.
#pragma once

#include <cstdint>
#include <vector>

namespace ombrix::bench {

/// Memory somewhat larger than all caches.
class ColdCaches {
  public:
    ColdCaches();

    /// Reads it all, so that caches hold nothing else.
    void Evict() const;

  private:
    std::vector<std::uint8_t> memory_;
};

}  // namespace ombrix::bench
