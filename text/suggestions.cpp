#include "text/suggestions.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "text/names.h"
#include "text/phrases.h"

namespace ombrix::text {
namespace {

/// Insertions, removals, replacements and swaps of neighbours that turn one name into the other.
std::size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> beforeLast, last, row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    const auto isSame = [&](std::size_t i, std::size_t j) { return LowerCase(a[i]) == LowerCase(b[j]); };
    for (std::size_t i = 0; i < a.size(); ++i) {
        beforeLast = std::exchange(last, row);
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            row[j + 1] = std::min({last[j] + (isSame(i, j) ? 0 : 1), row[j] + 1, last[j + 1] + 1});
            const bool isSwap = i > 0 && j > 0 && isSame(i - 1, j) && isSame(i, j - 1);
            if (isSwap) row[j + 1] = std::min(row[j + 1], beforeLast[j - 1] + 1);
        }
    }
    return row[b.size()];
}

}  // namespace

std::vector<std::string> NearestNames(std::string_view name, const std::vector<std::string>& names, std::size_t most) {
    const std::size_t farthest = std::max<std::size_t>(1, name.size() / 3);
    std::vector<std::pair<std::size_t, std::string>> similar;
    for (const std::string& candidate : names) {
        const std::size_t distance = EditDistance(name, candidate);
        if (distance <= farthest) similar.emplace_back(distance, candidate);
    }
    std::ranges::stable_sort(similar, {}, &std::pair<std::size_t, std::string>::first);
    std::vector<std::string> nearest;
    for (std::size_t i = 0; i < similar.size() && i < most; ++i) nearest.push_back(similar[i].second);
    return nearest;
}

std::string NearestName(std::string_view name, const std::vector<std::string>& names) {
    const std::vector<std::string> nearest = NearestNames(name, names, 1);
    return nearest.empty() ? "" : nearest.front();
}

std::string Suggestion(std::string_view name, const std::vector<std::string>& names) {
    const std::string nearest = NearestName(name, names);
    if (!nearest.empty()) return "; did you mean " + Quoted(nearest) + "?";
    return names.empty() ? "; there are none" : "; there are: " + Join(names);
}

}  // namespace ombrix::text
