// Classes of two plug-ins: Base, Middle derived from it, and Grand derived from that.
#pragma once

#include <cstddef>
#include <cstdint>

struct BaseData {
    std::int64_t order;          ///< a digit for each constructor run: 1 Base, 2 Middle, 3 Grand
    std::int64_t* destructions;  ///< the same for destructors, of all objects
    std::int32_t tail;
};
/// Not a multiple of 8, on purpose: the next class's data is aligned all the same.
inline constexpr std::size_t kBaseDataSize = offsetof(BaseData, tail) + sizeof(std::int32_t);
static_assert(kBaseDataSize == 20);

struct MiddleData {
    BaseData* Base() { return reinterpret_cast<BaseData*>(reinterpret_cast<char*>(this) - 24); }
    std::int64_t untouched;
};

struct GrandData {
    /// As effects reach their base data.
    MiddleData* Middle() { return reinterpret_cast<MiddleData*>(reinterpret_cast<char*>(this) - sizeof(MiddleData)); }
    std::int64_t untouched;
};

/// Adds the class's digit, and a 9 if its memory was not 0.
inline void NoteConstruction(BaseData& base, int digit, std::int64_t untouched) {
    base.order = base.order * 10 + digit;
    if (untouched != 0) base.order = base.order * 10 + 9;
}
