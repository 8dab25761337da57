// What properties hold, and methods take and return.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <variant>

#include "ombrix/api.h"
#include "ombrix/object.h"

namespace ombrix::host {

/// Nil, Boolean, Integer (64 bits), Double, or an object.
class OMBRIX_API Value {
  public:
    Value() = default;
    Value(std::nullptr_t) {}
    Value(bool value) : held_(value) {}
    Value(int value) : held_(std::int64_t{value}) {}
    Value(std::int64_t value) : held_(value) {}
    Value(double value) : held_(value) {}
    Value(const void* pointer) = delete;  ///< would be taken for a Boolean
    Value(Object object) {
        if (object) held_ = std::move(object);
    }

    bool IsNil() const { return std::holds_alternative<std::monostate>(held_); }
    bool IsBoolean() const { return std::holds_alternative<bool>(held_); }
    bool IsInteger() const { return std::holds_alternative<std::int64_t>(held_); }
    bool IsDouble() const { return std::holds_alternative<double>(held_); }
    bool IsObject() const { return std::holds_alternative<Object>(held_); }

    /// An Error when the value is of another type. An Integer is also a Double, and nil is also an object.
    bool AsBoolean() const;
    std::int64_t AsInteger() const;
    double AsDouble() const;
    Object AsObject() const;

    /// "Integer", "Boolean", "Double", "nil", or an object's class.
    std::string TypeName() const;

  private:
    std::variant<std::monostate, bool, std::int64_t, double, Object> held_;
};

/// An argument by position or by the parameter's name. Those by position come first.
class Argument {
  public:
    template <class T>
    requires std::constructible_from<Value, T> Argument(T&& value) : value_(std::forward<T>(value)) {}
    Argument(std::string name, Value value) : name_(std::move(name)), value_(std::move(value)) {}

    const std::string& Name() const { return name_; }  ///< empty when by position
    const Value& Get() const { return value_; }

  private:
    std::string name_;
    Value value_;
};

/// `effect.Call("Apply", {Named("source", photo), Named("value", 30)})`
inline Argument Named(std::string name, Value value) { return {std::move(name), std::move(value)}; }

}  // namespace ombrix::host
