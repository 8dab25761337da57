#include "ombrix/value.h"

#include "ombrix/error.h"

namespace ombrix::host {
namespace {

[[noreturn]] void FailToBe(const char* expected, const Value& value) {
    throw Error("the value is " + value.TypeName() + ", not " + expected);
}

}  // namespace

bool Value::AsBoolean() const {
    if (!IsBoolean()) FailToBe("Boolean", *this);
    return std::get<bool>(held_);
}

std::int64_t Value::AsInteger() const {
    if (!IsInteger()) FailToBe("Integer", *this);
    return std::get<std::int64_t>(held_);
}

double Value::AsDouble() const {
    if (IsInteger()) return static_cast<double>(AsInteger());
    if (!IsDouble()) FailToBe("Double", *this);
    return std::get<double>(held_);
}

Object Value::AsObject() const {
    if (IsNil()) return {};
    if (!IsObject()) FailToBe("an object", *this);
    return std::get<Object>(held_);
}

std::string Value::TypeName() const {
    if (IsNil()) return "nil";
    if (IsBoolean()) return "Boolean";
    if (IsInteger()) return "Integer";
    if (IsDouble()) return "Double";
    return AsObject().ClassName();
}

}  // namespace ombrix::host
