// The formula of the map effect.
#pragma once

#include "pixels/formula.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// Replaces each channel by its entry in a table of 256 bytes.
struct ChannelTables : ByTable {
    Rgb<const std::uint8_t*> tables;

    explicit ChannelTables(Rgb<const std::uint8_t*> tables) : tables(tables) {}
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
