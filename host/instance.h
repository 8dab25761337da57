// An object as it lies in memory: this header, then the data of its class's furthest superclass, then that of the
// class derived from it, and so on.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/definition_records.h"

namespace ombrix::host {
struct Class;
}

/// What a handle points to.
struct REALobjectStruct {
    const ombrix::host::Class* type;
    std::int64_t references;  ///< in all
    std::int64_t held;        ///< those of them that the host or the program holds; the others are the plug-ins'
    std::uint64_t serial;     ///< 1 for the first object that the host made
    bool finished;            ///< its destructors have been started
};

namespace ombrix::host {

/// Where the data begins; keeps it aligned for every type.
inline constexpr std::size_t kHeaderSize = (sizeof(REALobjectStruct) + 15) / 16 * 16;

/// The data of one class within an instance.
inline void* ClassData(REALobjectStruct* instance, const REALclassDefinition& definition) {
    return reinterpret_cast<std::byte*>(instance) + definition.dataOffset;
}

}  // namespace ombrix::host
