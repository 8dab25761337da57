// A host with just the services that working on pixels takes. Calls go straight to the plug-in's functions, so that
// nothing of a host is measured.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "bench/bench_picture.h"
#include "sdk/definition_records.h"
#include "sdk/mp_image_filter.h"

namespace ombrix::bench {

/// Starts the plug-in on this host; once in a process.
void StartHost();

/// What the host gives when the plug-in asks for a new picture of any size. It stays the caller's.
void SetNewPicture(BenchPicture& picture);

/// An effect object.
class Effect {
  public:
    explicit Effect(std::string_view className);
    ~Effect();
    Effect(const Effect&) = delete;
    Effect& operator=(const Effect&) = delete;

    MPImageFilterData& Base();

    /// Sets a property. Value is its type in the instance.
    template <class Value>
    void Set(std::string_view property, Value value) {
        const REALpropertyDefinition& definition = Property(property);
        if (definition.setter.word == kStandardAccessor) {
            const auto bytes = std::as_bytes(std::span(&value, 1));
            std::memcpy(Data() + definition.parameter, bytes.data(), bytes.size());
        } else {
            using Setter = void (*)(REALobjectStruct*, std::int64_t, Value);
            reinterpret_cast<Setter>(definition.setter.function)(Handle(), definition.parameter, value);
        }
    }

    /// Calls "Apply(source)"; gives the picture of SetNewPicture, or null.
    REALobjectStruct* Apply(BenchPicture& source) { return apply_(Handle(), source.Handle()); }
    /// Calls "ApplyInPlace(source)", which BlendEffect does not have.
    void ApplyInPlace(BenchPicture& source) { applyInPlace_(Handle(), source.Handle()); }

  private:
    REALobjectStruct* Handle() { return reinterpret_cast<REALobjectStruct*>(memory_.data()); }
    std::uint8_t* Data() { return memory_.data() + record_->dataOffset; }
    const REALpropertyDefinition& Property(std::string_view name) const;
    /// Null when the class has no such method.
    REALproc Method(std::string_view declaration) const;

    const REALclassDefinition* record_;
    REALobjectStruct* (*apply_)(REALobjectStruct* self, REALobjectStruct* source);
    void (*applyInPlace_)(REALobjectStruct* self, REALobjectStruct* source);
    std::vector<std::uint8_t> memory_;
};

}  // namespace ombrix::bench
