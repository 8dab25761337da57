// An effect on the frames of a program for video.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bridges/common/effects.h"
#include "bridges/frei0r/parameters.h"

namespace ombrix::bridge {

/// Of one size of frames. Has no state but the values of its parameters.
class Instance {
  public:
    /// `effect` and `parameters` have to outlive it. `second`: the property that takes the second input of a mixer, or
    /// null.
    Instance(const Effect& effect, const std::vector<Parameter>& parameters, const Property* second, unsigned width,
             unsigned height);

    /// Values and their places are as f0r_set_param_value and f0r_get_param_value have them. A value that the effect
    /// does not take is told, and leaves the one before.
    void Set(std::size_t index, const void* value);
    void Get(std::size_t index, void* value);

    /// Frames are RGBA. One that the effect refuses is told, once, and passes as it is.
    void Update(const std::uint32_t* first, const std::uint32_t* second, std::uint32_t* out);

  private:
    struct Value {
        double number = 0;
        std::string text;
    };

    void Give(std::size_t index);
    void Tell(const std::string& sentence);
    void SetSecond(const std::uint32_t* frame);

    const Effect& effect_;
    const std::vector<Parameter>& parameters_;
    const Property* second_;
    const std::int64_t width_, height_;
    Object object_;
    std::vector<Value> values_;
    std::vector<std::uint8_t> shape_;  ///< of the second input, where that is transparent in parts
    std::string told_;
};

}  // namespace ombrix::bridge
