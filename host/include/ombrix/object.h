// Objects of the host's language.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ombrix/api.h"

/// The handles that plug-ins see point to it.
struct REALobjectStruct;

namespace ombrix::host {

class Argument;
class Value;
struct MethodInfo;

/// A counted reference to an object, or nil. Copies share the object, and the last one destroys it. Must not outlive
/// the Host.
class OMBRIX_API Object {
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
    /// The handle that plug-ins see. This Object keeps its reference.
    REALobjectStruct* Handle() const { return handle_; }

    /// As registered; "nil" for nil.
    std::string ClassName() const;
    /// Whether its class is, derives from or implements what is named.
    bool IsA(std::string_view classOrInterface) const;

    /// A property of the object's class or a superclass.
    Value Get(std::string_view property) const;
    void Set(std::string_view property, const Value& value) const;

    /// Calls the method that fits the arguments best, by their number, names and types. Objects that are not given are
    /// nil. A method without a result gives nil.
    Value Call(std::string_view method, const std::vector<Argument>& arguments) const;
    Value Call(std::string_view method) const;
    /// Calls this method, or what overrides it in the object's class; see Host::ChooseMethod.
    Value Call(const MethodInfo& method, const std::vector<Argument>& arguments) const;
    /// Calls the class's implementation of an interface's method.
    Value CallInterface(std::string_view interface, std::string_view method,
                        const std::vector<Argument>& arguments) const;

  private:
    explicit Object(REALobjectStruct* handle) : handle_(handle) {}
    REALobjectStruct* handle_ = nullptr;
};

}  // namespace ombrix::host
