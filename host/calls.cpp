#include "host/calls.h"

namespace ombrix::host {

Word ToWord(const Value& value, Kind kind) {
    switch (kind) {
        case Kind::Integer:
            return {.integer = value.AsInteger()};
        case Kind::Boolean: {
            Word word;
            word.boolean = value.AsBoolean();
            return word;
        }
        case Kind::Double:
            return {.real = value.AsDouble()};
        case Kind::Object:
            return {.object = value.AsObject().Handle()};
    }
    return {};
}

Value TakeValue(HostState& host, Word word, const std::string& type, const std::string& source) {
    switch (KindOf(type)) {
        case Kind::Integer:
            return word.integer;
        case Kind::Boolean:
            return word.boolean != 0;
        case Kind::Double:
            return word.real;
        case Kind::Object:
            break;
    }
    if (word.object == nullptr) return nullptr;
    if (!host.objects.IsLive(word.object)) {
        host.watch.NoteFault(source + " returned " + host.objects.Describe(word.object));
        return nullptr;
    }
    Object object = Object::Adopt(word.object);
    if (object.IsA(type)) return object;
    host.watch.NoteFault(source + " returned " + host.objects.Describe(word.object) + " where " + type +
                         " is declared");
    return nullptr;
}

Value CallMethod(HostState& host, const std::string& name, REALobjectStruct* self, const Binding& binding) {
    const MethodDeclaration& declaration = binding.method->declaration;
    std::vector<TypedWord> arguments;
    if (self != nullptr) arguments.push_back({Kind::Object, {.object = self}});
    for (std::size_t i = 0; i < binding.values.size(); ++i) {
        const Kind kind = KindOf(declaration.parameters[i].type);
        arguments.push_back({kind, ToWord(binding.values[i], kind)});
    }
    const Object keptAlive = Object::Share(self);
    Watch::Call call(host.watch, name);
    const std::optional<Kind> resultKind =
        declaration.resultType ? std::optional(KindOf(*declaration.resultType)) : std::nullopt;
    const Word word = Invoke(binding.method->function, arguments, resultKind);
    Value result = declaration.resultType ? TakeValue(host, word, *declaration.resultType, name) : Value();
    call.Finish();
    return result;
}

}  // namespace ombrix::host
