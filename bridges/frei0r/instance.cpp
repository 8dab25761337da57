#include "bridges/frei0r/instance.h"

#include <algorithm>
#include <cstdio>

namespace ombrix::bridge {
namespace {

ombrix_rows Rows(const void* base, std::int64_t width, std::int64_t height, ombrix_layout layout) {
    const bool hasAlpha = layout == OMBRIX_RGBA;
    return {sizeof(ombrix_rows),
            const_cast<void*>(base),
            static_cast<std::ptrdiff_t>(width * (hasAlpha ? 4 : 3)),
            width,
            height,
            layout,
            hasAlpha ? OMBRIX_ALPHA_STRAIGHT : OMBRIX_ALPHA_NONE};
}

}  // namespace

Instance::Instance(const Effect& effect, const std::vector<Parameter>& parameters, const Property* second,
                   unsigned width, unsigned height)
    : effect_(effect),
      parameters_(parameters),
      second_(second),
      width_(width),
      height_(height),
      object_(effect.name),
      values_(parameters.size()) {
    for (std::size_t i = 0; i < parameters_.size(); ++i) {
        const Parameter& parameter = parameters_[i];
        if (parameter.type == F0R_PARAM_STRING) {
            values_[i].text = InitialText(parameter);
        } else {
            values_[i].number = InitialValue(parameter);
        }
        if (parameter.property->refusesDefault) Give(i);
    }
}

void Instance::Set(std::size_t index, const void* value) {
    const Value before = values_[index];
    if (parameters_[index].type == F0R_PARAM_STRING) {
        const char* text = *static_cast<char* const*>(value);
        values_[index].text = text != nullptr ? text : "";
    } else {
        values_[index].number = *static_cast<const double*>(value);
    }
    try {
        Give(index);
    } catch (const std::exception& error) {
        values_[index] = before;
        Tell(error.what());
    }
}

void Instance::Give(std::size_t index) {
    const Parameter& parameter = parameters_[index];
    const std::string& name = parameter.property->name;
    const Value& value = values_[index];
    if (parameter.type == F0R_PARAM_STRING) {
        object_.Set(name, value.text);
    } else if (parameter.type == F0R_PARAM_BOOL) {
        object_.Set(name, value.number >= 0.5);
    } else if (parameter.property->type == Type::Integer) {
        object_.Set(name, static_cast<std::int64_t>(parameter.Meant(value.number)));
    } else {
        object_.Set(name, parameter.Meant(value.number));
    }
}

void Instance::Get(std::size_t index, void* value) {
    if (parameters_[index].type == F0R_PARAM_STRING) {
        *static_cast<char**>(value) = values_[index].text.data();
    } else {
        *static_cast<double*>(value) = values_[index].number;
    }
}

void Instance::Update(const std::uint32_t* first, const std::uint32_t* second, std::uint32_t* out) {
    try {
        if (second_ != nullptr && second != nullptr) SetSecond(second);
        object_.Apply(Rows(first, width_, height_, OMBRIX_RGBA), Rows(out, width_, height_, OMBRIX_RGBA));
    } catch (const std::exception& error) {
        Tell(error.what());
        if (out != first) std::copy_n(first, width_ * height_, out);
    }
}

void Instance::SetSecond(const std::uint32_t* frame) {
    object_.Set(second_->name, Rows(frame, width_, height_, OMBRIX_RGBA));
    if (!second_->shapeMask) return;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(frame);
    const auto pixels = static_cast<std::size_t>(width_ * height_);
    std::uint8_t leastAlpha = 255;
    for (std::size_t i = 0; i < pixels; ++i) leastAlpha = std::min(leastAlpha, bytes[4 * i + 3]);
    if (leastAlpha == 255) return object_.Unset(second_->shapeMask->property);
    shape_.resize(3 * pixels);
    const std::uint8_t flip = second_->shapeMask->whiteHides ? 255 : 0;
    for (std::size_t i = 0; i < pixels; ++i) {
        std::fill_n(&shape_[3 * i], 3, static_cast<std::uint8_t>(bytes[4 * i + 3] ^ flip));
    }
    object_.Set(second_->shapeMask->property, Rows(shape_.data(), width_, height_, OMBRIX_RGB));
}

void Instance::Tell(const std::string& sentence) {
    if (sentence == told_) return;
    told_ = sentence;
    std::fprintf(stderr, "ombrix_%s: %s\n", effect_.word.c_str(), sentence.c_str());
}

}  // namespace ombrix::bridge
