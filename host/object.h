// Objects of the host's language, and the values that pass in and out of their properties and methods.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "frame/definition_records.h"

namespace ombrix::host {

class Value;
class Argument;

/// A counted reference to an object of the host's language, or nil. Copies share the object; the object is destroyed
/// with its last reference. Must not outlive the Host that made it, and belongs to that host's thread.
class Object {
  public:
    Object() = default;
    Object(std::nullptr_t) {}
    Object(const Object& other);
    Object(Object&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Object& operator=(Object other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Object();

    /// Takes over a reference that the caller owns.
    static Object Adopt(REALobjectStruct* handle);
    /// Adds a reference of its own.
    static Object Share(REALobjectStruct* handle);

    explicit operator bool() const { return handle_ != nullptr; }
    bool operator==(const Object& other) const = default;
    /// The handle that plug-ins see; still owned by this Object.
    REALobjectStruct* Handle() const { return handle_; }

    /// The name of the object's class, as registered.
    std::string ClassName() const;
    /// Whether the object's class is, derives from, or implements what is named, in any case.
    bool IsA(std::string_view classOrInterface) const;

    /// A property by name, in any case, looked for from the object's class upwards.
    Value Get(std::string_view property) const;
    void Set(std::string_view property, const Value& value) const;

    /// Calls a method by name, in any case. The overload is chosen by the count, names and types of the arguments;
    /// Picture, Point and other object parameters that are not given are nil. A method without a result gives nil.
    Value Call(std::string_view method, const std::vector<Argument>& arguments) const;
    Value Call(std::string_view method) const;
    /// Calls the method that an interface declares, on an object whose class implements that interface.
    Value CallInterface(std::string_view interface, std::string_view method,
                        const std::vector<Argument>& arguments) const;

  private:
    explicit Object(REALobjectStruct* handle) : handle_(handle) {}
    REALobjectStruct* handle_ = nullptr;
};

/// A value of the host's language: nil, Boolean, Integer (64 bits), Double, or an object.
class Value {
  public:
    Value() = default;
    Value(std::nullptr_t) {}
    Value(bool value) : held_(value) {}
    Value(int value) : held_(std::int64_t{value}) {}
    Value(std::int64_t value) : held_(value) {}
    Value(double value) : held_(value) {}
    Value(const void* pointer) = delete;  ///< it would be taken for a Boolean
    Value(Object object) {
        if (object) held_ = std::move(object);
    }

    bool IsNil() const { return std::holds_alternative<std::monostate>(held_); }
    bool IsBoolean() const { return std::holds_alternative<bool>(held_); }
    bool IsInteger() const { return std::holds_alternative<std::int64_t>(held_); }
    bool IsDouble() const { return std::holds_alternative<double>(held_); }
    bool IsObject() const { return std::holds_alternative<Object>(held_); }

    /// The value as what the caller expects; an Error that says what it is when it is something else. An Integer is
    /// also a Double, and nil is also an object.
    bool AsBoolean() const;
    std::int64_t AsInteger() const;
    double AsDouble() const;
    Object AsObject() const;

    /// "Integer", "Boolean", "Double", "nil", or an object's class: for messages.
    std::string TypeName() const;

  private:
    std::variant<std::monostate, bool, std::int64_t, double, Object> held_;
};

/// One argument of a call: by position, or by the parameter's name (in any case). Those by position come first.
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
