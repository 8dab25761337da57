// A chain of classes over two plug-ins: Base and Middle in one, Grand, derived from Middle, in the other.
#pragma once

#include <cstddef>
#include <cstdint>

struct BaseData {
    std::int64_t order;          ///< a digit for each constructor that has run: 1 Base, 2 Middle, 3 Grand
    std::int64_t* destructions;  ///< likewise for destructors, of all objects
    std::int32_t tail;
};
/// Not a multiple of 8 on purpose: what follows begins at the next one.
inline constexpr std::size_t kBaseDataSize = offsetof(BaseData, tail) + sizeof(std::int32_t);
static_assert(kBaseDataSize == 20);

struct MiddleData {
    BaseData* Base() { return reinterpret_cast<BaseData*>(reinterpret_cast<char*>(this) - 24); }
    std::int64_t untouched;
};

struct GrandData {
    /// As effects reach their base data: a step back by its size.
    MiddleData* Middle() { return reinterpret_cast<MiddleData*>(reinterpret_cast<char*>(this) - sizeof(MiddleData)); }
    std::int64_t untouched;
};

/// Adds a digit; a 9 as well when the class's own memory was not 0.
inline void NoteConstruction(BaseData& base, int digit, std::int64_t untouched) {
    base.order = base.order * 10 + digit;
    if (untouched != 0) base.order = base.order * 10 + 9;
}
