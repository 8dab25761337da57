#include "cli/images/marked_room.h"

#include <algorithm>
#include <functional>
#include <random>

namespace ombrix::cli {

MarkedRoom::MarkedRoom(std::size_t size) : mark_(std::max(size, kShortest)) {
    std::independent_bits_engine<std::mt19937_64, 8, unsigned> random{std::random_device{}()};
    std::ranges::generate(mark_, [&random] { return static_cast<std::uint8_t>(random()); });
}

std::optional<std::size_t> MarkedRoom::FindIn(std::span<const std::uint8_t> file) const {
    const auto found = std::search(file.begin(), file.end(),
                                   std::boyer_moore_horspool_searcher(mark_.begin(), mark_.begin() + kShortest));
    if (static_cast<std::size_t>(file.end() - found) < mark_.size()) return std::nullopt;
    return static_cast<std::size_t>(found - file.begin());
}

}  // namespace ombrix::cli
