// Pictures in memory that notices a byte too many.
#pragma once

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "ombrix/ombrix.h"

namespace ombrix::test {

inline int BytesOf(ombrix_layout layout) {
    return layout == OMBRIX_GREY ? 1 : layout == OMBRIX_RGB || layout == OMBRIX_BGR ? 3 : 4;
}

/// Rows that end, or begin, right at a page that cannot be touched, with bytes between them that must stay.
class GuardedRows {
  public:
    /// `gap`: bytes between rows. `isUp`: stored from the bottom up. `atEnd`: whether they end at the bad page.
    GuardedRows(int width, int height, ombrix_layout layout, ombrix_alpha alpha, int gap, bool isUp, bool atEnd)
        : used_(static_cast<std::size_t>(width) * BytesOf(layout)), apart_(used_ + gap) {
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        // Nothing is after the last row.
        length_ = apart_ * (height - 1) + used_;
        mapped_ = (length_ + page - 1) / page * page + 2 * page;
        map_ = static_cast<std::uint8_t*>(
            mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        mprotect(map_, page, PROT_NONE);
        mprotect(map_ + mapped_ - page, page, PROT_NONE);
        first_ = atEnd ? map_ + mapped_ - page - length_ : map_ + page;
        std::memset(first_, 0xa5, length_);
        const auto apart = static_cast<std::ptrdiff_t>(apart_);
        rows = {
            sizeof rows, isUp ? first_ + apart_ * (height - 1) : first_, isUp ? -apart : apart, width, height, layout,
            alpha};
    }
    ~GuardedRows() { munmap(map_, mapped_); }
    GuardedRows(const GuardedRows&) = delete;
    GuardedRows& operator=(const GuardedRows&) = delete;

    std::uint8_t* Pixel(std::int64_t x, std::int64_t y) const {
        return static_cast<std::uint8_t*>(rows.base) + y * rows.row_bytes + x * BytesOf(rows.layout);
    }

    void Fill(std::uint32_t seed) const {
        for (int y = 0; y < rows.height; ++y) {
            for (std::size_t i = 0; i < used_; ++i) {
                seed = seed * 1664525 + 1013904223;
                const std::uint32_t kind = seed >> 16 & 7;
                Pixel(0, y)[i] = kind == 0 ? 0 : kind == 1 ? 255 : static_cast<std::uint8_t>(seed >> 24);
            }
        }
    }

    bool KeepsGaps() const {
        for (std::size_t at = used_; at < length_; at += apart_) {
            const std::uint8_t* gap = first_ + at;
            if (std::any_of(gap, gap + (apart_ - used_), [](std::uint8_t byte) { return byte != 0xa5; })) return false;
        }
        return true;
    }

    std::vector<std::uint8_t> Bytes() const { return {first_, first_ + length_}; }

    ombrix_rows rows;

  private:
    std::size_t used_, apart_, length_ = 0, mapped_ = 0;
    std::uint8_t* map_ = nullptr;
    std::uint8_t* first_ = nullptr;
};

/// An effect by name, with these values.
class Effect {
  public:
    explicit Effect(const char* name, const std::vector<std::pair<const char*, const char*>>& values = {}) {
        EXPECT_EQ(ombrix_effect_new(name, &handle), OMBRIX_OK) << ombrix_last_error();
        for (const auto& [property, value] : values) {
            EXPECT_EQ(ombrix_set_text(handle, property, value), OMBRIX_OK) << ombrix_last_error();
        }
    }
    ~Effect() { ombrix_effect_free(handle); }
    Effect(const Effect&) = delete;
    Effect& operator=(const Effect&) = delete;

    ombrix_effect* handle = nullptr;
};

/// Loads the effects of tests/capi/plugins, once in the process.
inline void LoadRowEffects() {
    static const ombrix_status status = ombrix_load(OMBRIX_BUILD_DIR "/tests/row_effects.so");
    ASSERT_EQ(status, OMBRIX_OK) << ombrix_last_error();
}

}  // namespace ombrix::test
