// An object in memory: this header, then its classes' data, beginning with the furthest superclass.
#pragma once

#include <cstddef>
#include <cstdint>

#include "sdk/definition_records.h"

namespace ombrix::host {
struct Class;
}

struct REALobjectStruct {
    const ombrix::host::Class* type;
    std::int64_t references;  ///< in all
    std::int64_t held;        ///< of these, by the host and the program; plug-ins have the others
    std::uint64_t serial;     ///< 1 for the host's first object
    bool finished;            ///< its destructors have started
};

namespace ombrix::host {

/// Where the data begins, aligned for any type.
inline constexpr std::size_t kHeaderSize = (sizeof(REALobjectStruct) + 15) / 16 * 16;

/// The data of one class within an instance.
inline void* ClassData(REALobjectStruct* instance, const REALclassDefinition& definition) {
    return reinterpret_cast<std::byte*>(instance) + definition.dataOffset;
}

}  // namespace ombrix::host
