#include "cli/terminal.h"

#include <sys/ioctl.h>

#include <algorithm>
#include <cstdlib>
#include <map>

#include "text/numbers.h"

namespace ombrix::cli {

namespace {

std::size_t WidthOf(int descriptor) {
    constexpr std::size_t kNarrowest = 60, kWidest = 120, kUsual = 80;
    winsize size{};
    if (ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return std::clamp<std::size_t>(size.ws_col, kNarrowest, kWidest);
    }
    const char* columns = std::getenv("COLUMNS");
    return std::clamp(columns ? text::ParseNumber<std::size_t>(columns).value_or(kUsual) : kUsual, kNarrowest, kWidest);
}

}  // namespace

std::size_t LineWidth(int descriptor) {
    static std::map<int, std::size_t> widths;
    return widths.try_emplace(descriptor, WidthOf(descriptor)).first->second;
}

}  // namespace ombrix::cli
