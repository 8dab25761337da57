#include "ombrix/object.h"

#include "host/calls.h"
#include "host/properties.h"
#include "text/names.h"
#include "text/phrases.h"
#include "text/suggestions.h"

namespace ombrix::host {
namespace {

REALobjectStruct* LiveObject(HostState& host, REALobjectStruct* handle) {
    if (host.objects.IsLive(handle)) return handle;
    throw Error("the object is " + host.objects.Describe(handle));
}

/// An Error for nil, which has no properties or methods.
REALobjectStruct* LiveObject(HostState& host, REALobjectStruct* handle, const char* kind, std::string_view name) {
    if (handle == nullptr) throw Error("nil has no " + std::string(kind) + " " + text::Quoted(name));
    return LiveObject(host, handle);
}

FoundProperty RequireProperty(const Class& type, std::string_view name) {
    if (const std::optional<FoundProperty> found = FindProperty(type, name)) return *found;
    throw Error(type.info.name + " has no property " + text::Quoted(name) +
                text::Suggestion(name, PropertyNames(type)));
}

const Interface& RequireInterface(HostState& host, const Class& type, std::string_view name) {
    const Interface* interface = host.registry.FindInterface(name);
    if (interface == nullptr) throw Error("there is no interface " + text::Quoted(name));
    if (Distance(type, name) >= 0) return *interface;
    std::vector<std::string> names;
    type.FindUpwards([&](const Class& ancestor) {
        for (const Interface* each : ancestor.interfaces) names.push_back(each->name);
        return false;
    });
    throw Error(type.info.name + " does not implement " + interface->name +
                (names.empty() ? ", or any other interface" : "; it implements: " + text::Join(names)));
}

}  // namespace

Object::Object(const Object& other) : Object(Share(other.handle_)) {}

Object::~Object() {
    if (handle_ == nullptr) return;
    HostState* host = HostState::Current();
    if (host == nullptr) return;
    if (!host->watch.OnOwnThread()) {
        host->watch.FaultOfOtherThread("an object's release");
        return;
    }
    if (host->objects.IsLive(handle_)) {
        host->objects.LetGo(handle_);
    } else {
        host->watch.Fault("still refers to " + host->objects.Describe(handle_));
    }
}

Object Object::Adopt(REALobjectStruct* handle) {
    if (handle == nullptr) return {};
    HostState& host = HostState::Required();
    host.objects.Adopt(LiveObject(host, handle));
    return Object(handle);
}

Object Object::Share(REALobjectStruct* handle) {
    if (handle == nullptr) return {};
    HostState& host = HostState::Required();
    host.objects.Hold(LiveObject(host, handle));
    return Object(handle);
}

std::string Object::ClassName() const {
    return handle_ == nullptr ? "nil" : LiveObject(HostState::Required(), handle_)->type->info.name;
}

bool Object::IsA(std::string_view classOrInterface) const {
    return handle_ != nullptr && Distance(*LiveObject(HostState::Required(), handle_)->type, classOrInterface) >= 0;
}

Value Object::Get(std::string_view property) const {
    HostState& host = HostState::Required();
    const Object self = *this;
    const Class& type = *LiveObject(host, handle_, "property", property)->type;
    const FoundProperty found = RequireProperty(type, property);
    const std::string name = type.info.name + "." + found.property->name;

    Watch::Call call(host.watch, name);
    Value value = TakeValue(host, ReadProperty(host, handle_, found), found.property->type, name);
    call.Finish();
    return value;
}

void Object::Set(std::string_view property, const Value& value) const {
    HostState& host = HostState::Required();
    const Object self = *this;
    const Class& type = *LiveObject(host, handle_, "property", property)->type;
    const FoundProperty found = RequireProperty(type, property);
    const std::string name = type.info.name + "." + found.property->name;
    if (found.property->row->setter.word == kNoAccessor) throw Error(name + " can only be read");
    if (Cost(value, found.property->type) < 0)
        throw Error(name + " takes " + found.property->type + ", not " + value.TypeName());

    Watch::Call call(host.watch, name);
    WriteProperty(host, handle_, found, ToWord(value, found.property->kind));
    call.Finish();
}

Value Object::Call(std::string_view method, const std::vector<Argument>& arguments) const {
    HostState& host = HostState::Required();
    return CallNamed(host, handle_, *LiveObject(host, handle_, "method", method)->type, method, arguments);
}

Value Object::Call(std::string_view method) const { return Call(method, {}); }

Value Object::Call(const MethodInfo& method, const std::vector<Argument>& arguments) const {
    HostState& host = HostState::Required();
    const Class& type = *LiveObject(host, handle_, "method", method.name)->type;
    return CallDeclared(host, handle_, type, ReadMethod(method.declaration), arguments);
}

Value Object::CallInterface(std::string_view interface, std::string_view method,
                            const std::vector<Argument>& arguments) const {
    HostState& host = HostState::Required();
    const Class& type = *LiveObject(host, handle_, "method", method)->type;
    const Interface& implemented = RequireInterface(host, type, interface);
    std::vector<std::string> names;
    for (const Method& declared : implemented.methods) {
        names.push_back(declared.declaration.name);
        if (text::SameName(names.back(), method)) return CallDeclared(host, handle_, type, declared, arguments);
    }
    throw Error(implemented.name + " has no method " + text::Quoted(method) + text::Suggestion(method, names));
}

}  // namespace ombrix::host
