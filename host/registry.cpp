#include "host/registry.h"

#include <algorithm>
#include <set>

#include "host/instance.h"
#include "ombrix/error.h"
#include "text/names.h"
#include "text/phrases.h"

namespace ombrix::host {
namespace {

/// A higher count is rubbish, and would lead beyond the table.
constexpr std::int64_t kMostRows = 65535;
/// Bytes.
constexpr std::int64_t kMostInstanceData = 1 << 24;

/// `class "X", property 2 ("Value")`
std::string RowName(const std::string& owner, const char* kind, std::size_t index, const std::string& name) {
    return owner + ", " + kind + " " + std::to_string(index + 1) +
           (name.empty() ? "" : " (" + text::Quoted(name) + ")");
}

[[noreturn]] void Refuse(const std::string& row, const std::string& reason) { throw Error(row + ": " + reason); }

std::string TextOf(const char* text) { return text == nullptr ? "" : text; }

void CheckVersion(const std::string& owner, std::int64_t version) {
    if (version == kDefinitionVersion) return;
    Refuse(owner, "its record has version " + std::to_string(version) + ", and this host reads only version " +
                      std::to_string(kDefinitionVersion));
}

void CheckTable(const std::string& owner, const char* kind, std::int64_t count, const void* table) {
    const std::string of = "its record claims " + std::to_string(count) + " " + kind;
    if (count < 0 || count > kMostRows) Refuse(owner, of + ", which is impossible");
    if (count > 0 && table == nullptr) Refuse(owner, of + " but no table of them");
}

std::vector<Method> ReadMethods(const std::string& owner, const REALmethodDefinition* rows, std::int64_t count) {
    CheckTable(owner, "methods", count, rows);
    std::vector<Method> methods;
    std::set<std::string> signatures;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        const std::string row = RowName(owner, "method", i, TextOf(rows[i].declaration));
        Method method;
        try {
            method = ReadMethod(TextOf(rows[i].declaration));
        } catch (const Error& error) {
            Refuse(row, error.what());
        }
        method.function = rows[i].function;
        method.flags = rows[i].flags;
        if (method.function == nullptr) Refuse(row, "it has no function");
        if (!signatures.insert(method.declaration.ParameterSignature()).second)
            Refuse(row, "another row has a method of this name with these types");
        methods.push_back(std::move(method));
    }
    return methods;
}

std::vector<ConstantInfo> ReadConstants(const std::string& owner, const REALconstantDefinition* rows,
                                        std::int64_t count) {
    CheckTable(owner, "constants", count, rows);
    std::vector<ConstantInfo> constants;
    std::set<std::string> names;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        const std::string row = RowName(owner, "constant", i, TextOf(rows[i].declaration));
        try {
            constants.push_back(ParseConstant(TextOf(rows[i].declaration)));
        } catch (const Error& error) {
            Refuse(row, error.what());
        }
        if (!names.insert(text::LowerCase(constants.back().name)).second) Refuse(row, "another row has this name");
    }
    return constants;
}

void CheckAccessors(const std::string& row, const REALpropertyDefinition& property, Kind kind, std::int64_t dataSize) {
    if (property.getter.word == kNoAccessor) Refuse(row, "it has no getter");
    const bool stored = property.getter.word == kStandardAccessor || property.setter.word == kStandardAccessor;
    const std::int64_t size = static_cast<std::int64_t>(SizeOf(kind));
    if (stored && (property.parameter < 0 || property.parameter > dataSize - size)) {
        Refuse(row, "its " + std::to_string(size) + " bytes at offset " + std::to_string(property.parameter) +
                        " lie outside the class's " + std::to_string(dataSize) + " bytes of instance data");
    }
}

std::vector<Property> ReadProperties(const std::string& owner, const REALclassDefinition& definition,
                                     std::vector<PropertyInfo>& infos) {
    CheckTable(owner, "properties", definition.propertyCount, definition.properties);
    std::vector<Property> properties;
    std::set<std::string> names;
    for (std::size_t i = 0; i < static_cast<std::size_t>(definition.propertyCount); ++i) {
        const REALpropertyDefinition& definitionRow = definition.properties[i];
        const std::string row = RowName(owner, "property", i, TextOf(definitionRow.name));
        Property property{TextOf(definitionRow.name), TextOf(definitionRow.type), Kind::Object, &definitionRow};
        if (!text::IsName(property.name)) Refuse(row, "it has no name that the language allows");
        if (!text::IsName(property.type)) Refuse(row, "it has no type");
        property.kind = KindOf(property.type);
        CheckAccessors(row, definitionRow, property.kind, definition.dataSize);
        if (!names.insert(text::LowerCase(property.name)).second) Refuse(row, "another row has this name");
        infos.push_back({property.name, property.type, definitionRow.setter.word == kNoAccessor, definitionRow.flags});
        properties.push_back(std::move(property));
    }
    return properties;
}

std::vector<std::string> SplitAtCommas(std::string_view text) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t comma = std::min(text.find(',', start), text.size());
        parts.emplace_back(text.substr(start, comma - start));
        start = comma + 1;
    }
    return parts;
}

Interface MakeInterface(std::string_view name, const char* method) { return {std::string(name), {ReadMethod(method)}}; }

const Method* FindSignature(const std::vector<Method>& methods, std::string_view signature) {
    for (const Method& method : methods) {
        if (method.declaration.Signature() == signature) return &method;
    }
    return nullptr;
}

void AddMethodsNamed(std::string_view name, const std::vector<Method>& methods, std::vector<const Method*>& found) {
    for (const Method& method : methods) {
        const bool isOverridden = std::ranges::any_of(found, [&](const Method* other) {
            return other->declaration.ParameterSignature() == method.declaration.ParameterSignature();
        });
        if (text::SameName(method.declaration.name, name) && !isOverridden) found.push_back(&method);
    }
}

void AddNames(const std::vector<Method>& methods, std::vector<std::string>& names) {
    for (const Method& method : methods) {
        const std::string& name = method.declaration.name;
        const auto isSame = [&](const std::string& other) { return text::SameName(other, name); };
        if (std::ranges::none_of(names, isSame)) names.push_back(name);
    }
}

template <class Item>
const Item* FindByName(const std::vector<std::unique_ptr<Item>>& items, std::string_view name) {
    for (const auto& item : items) {
        if (text::SameName(item->info.name, name)) return item.get();
    }
    return nullptr;
}

}  // namespace

Registry::Registry() {
    interfaces_.push_back(MakeInterface(kEffectInterface, "Apply(source as Picture) as Picture"));
    interfaces_.push_back(MakeInterface(kInPlaceInterface, "ApplyInPlace(source as Picture)"));
    interfaces_.push_back(MakeInterface(kProgressInterface, "OnProgress(value as Integer,total as Integer)"));
}

void Registry::AddClass(REALclassDefinition& definition, const std::string& plugin) {
    CheckNewName("class", definition.name);
    const std::string owner = "class " + text::Quoted(definition.name);
    CheckVersion(owner, definition.version);

    auto added = std::make_unique<Class>();
    added->definition = &definition;
    added->info.name = definition.name;
    added->info.superclass = TextOf(definition.superclass);
    added->info.flags = definition.flags;
    added->info.plugin = plugin;
    if (definition.superclass != nullptr) {
        added->superclass = FindClass(definition.superclass);
        if (added->superclass == nullptr)
            Refuse(owner, "its superclass " + text::Quoted(definition.superclass) + " has not been registered");
    }
    if (definition.dataSize < 0 || definition.dataSize > kMostInstanceData) {
        Refuse(owner, std::to_string(definition.dataSize) + " bytes of instance data are impossible");
    }
    added->properties = ReadProperties(owner, definition, added->info.properties);
    added->methods = ReadMethods(owner, definition.methods, definition.methodCount);
    for (const Method& method : added->methods) added->info.methods.push_back(method.Info());
    added->info.constants = ReadConstants(owner, definition.constants, definition.constantCount);
    if (definition.interfaces != nullptr) added->info.interfaces = SplitAtCommas(definition.interfaces);
    for (const std::string& name : added->info.interfaces) {
        const Interface* claimed = FindInterface(name);
        if (claimed == nullptr) Refuse(owner, "this host knows no interface " + text::Quoted(name));
        for (const Method& method : claimed->methods) {
            if (FindMethod(*added, method.declaration.Signature()) == nullptr)
                Refuse(owner, "it claims " + claimed->name + " but has no method " + text::Quoted(method.written));
        }
        added->interfaces.push_back(claimed);
    }

    // Plug-ins step from a class's data to its superclass's by the size alone.
    constexpr std::size_t kDataAlignment = 8;
    const std::size_t offset = added->superclass != nullptr ? added->superclass->instanceSize : kHeaderSize;
    const std::size_t size = static_cast<std::size_t>(definition.dataSize);
    added->instanceSize = offset + (size + kDataAlignment - 1) / kDataAlignment * kDataAlignment;
    definition.dataOffset = static_cast<std::int64_t>(offset);
    classes_.push_back(std::move(added));
}

void Registry::AddModule(const REALmoduleDefinition& definition, const std::string& plugin) {
    CheckNewName("module", definition.name);
    const std::string owner = "module " + text::Quoted(definition.name);
    CheckVersion(owner, definition.version);
    auto added = std::make_unique<Module>();
    added->info.name = definition.name;
    added->info.plugin = plugin;
    added->methods = ReadMethods(owner, definition.methods, definition.methodCount);
    for (const Method& method : added->methods) added->info.methods.push_back(method.Info());
    added->info.constants = ReadConstants(owner, definition.constants, definition.constantCount);
    modules_.push_back(std::move(added));
}

void Registry::CheckNewName(std::string_view what, const char* name) const {
    if (name == nullptr || !text::IsName(name)) {
        throw Error("a " + std::string(what) + " has no name that the language allows (" + text::Quoted(TextOf(name)) +
                    ")");
    }
    if (FindClass(name) == nullptr && FindModule(name) == nullptr && FindInterface(name) == nullptr &&
        KindOf(name) == Kind::Object) {
        return;
    }
    Refuse(std::string(what) + " " + text::Quoted(name), "something of this name exists already");
}

void Registry::CheckTypes(const std::string& plugin) const {
    for (const auto& type : classes_) {
        if (type->info.plugin != plugin) continue;
        const std::string owner = "class " + text::Quoted(type->info.name);
        for (std::size_t i = 0; i < type->properties.size(); ++i) {
            const Property& property = type->properties[i];
            CheckType(RowName(owner, "property", i, property.name), property.type);
        }
        CheckTypes(owner, type->methods);
    }
    for (const auto& module : modules_) {
        if (module->info.plugin == plugin) CheckTypes("module " + text::Quoted(module->info.name), module->methods);
    }
}

void Registry::CheckTypes(const std::string& owner, const std::vector<Method>& methods) const {
    for (std::size_t i = 0; i < methods.size(); ++i) {
        const std::string row = RowName(owner, "method", i, methods[i].written);
        for (const ParameterInfo& parameter : methods[i].declaration.parameters) CheckType(row, parameter.type);
        if (methods[i].declaration.resultType) CheckType(row, *methods[i].declaration.resultType);
    }
}

void Registry::CheckType(const std::string& row, const std::string& type) const {
    if (KindOf(type) != Kind::Object || FindClass(type) != nullptr || FindInterface(type) != nullptr) return;
    Refuse(row, "there is no type " + text::Quoted(type));
}

void Registry::Remove(const std::string& plugin) {
    std::erase_if(classes_, [&](const auto& type) { return type->info.plugin == plugin; });
    std::erase_if(modules_, [&](const auto& module) { return module->info.plugin == plugin; });
}

bool Registry::HasAnyOf(const std::string& plugin) const {
    const auto ofPlugin = [&](const auto& item) { return item->info.plugin == plugin; };
    return std::ranges::any_of(classes_, ofPlugin) || std::ranges::any_of(modules_, ofPlugin);
}

const Class* Registry::FindClass(std::string_view name) const { return FindByName(classes_, name); }
const Module* Registry::FindModule(std::string_view name) const { return FindByName(modules_, name); }

const Interface* Registry::FindInterface(std::string_view name) const {
    const auto found =
        std::ranges::find_if(interfaces_, [&](const Interface& i) { return text::SameName(i.name, name); });
    return found == interfaces_.end() ? nullptr : &*found;
}

const Class* Registry::FindReference(REALclassRef reference) const {
    for (const auto& type : classes_) {
        if (static_cast<const void*>(type.get()) == reference) return type.get();
    }
    return nullptr;
}

int Distance(const Class& type, std::string_view classOrInterface) {
    int distance = 0;
    bool implements = false;
    const Class* found = type.FindUpwards([&](const Class& ancestor) {
        if (text::SameName(ancestor.info.name, classOrInterface)) return true;
        ++distance;
        for (const Interface* each : ancestor.interfaces) {
            if (text::SameName(each->name, classOrInterface)) implements = true;
        }
        return false;
    });
    return found != nullptr || implements ? distance : -1;
}

Method ReadMethod(std::string declaration) {
    Method method{ParseMethod(declaration), {}};
    method.written = std::move(declaration);
    return method;
}

MethodInfo Method::Info() const {
    return {declaration.name, declaration.parameters, declaration.resultType, written, flags};
}

const Method* FindMethod(const Class& type, std::string_view signature) {
    const Method* found = nullptr;
    type.FindUpwards([&](const Class& ancestor) {
        found = FindSignature(ancestor.methods, signature);
        return found != nullptr;
    });
    return found;
}

const Method* FindMethod(const Module& module, std::string_view signature) {
    return FindSignature(module.methods, signature);
}

std::vector<const Method*> MethodsNamed(const Class& type, std::string_view name) {
    std::vector<const Method*> methods;
    type.FindUpwards([&](const Class& ancestor) {
        AddMethodsNamed(name, ancestor.methods, methods);
        return false;
    });
    return methods;
}

std::vector<const Method*> MethodsNamed(const Module& module, std::string_view name) {
    std::vector<const Method*> methods;
    AddMethodsNamed(name, module.methods, methods);
    return methods;
}

std::vector<std::string> MethodNames(const Class& type) {
    std::vector<std::string> names;
    type.FindUpwards([&](const Class& ancestor) {
        AddNames(ancestor.methods, names);
        return false;
    });
    return names;
}

std::vector<std::string> MethodNames(const Module& module) {
    std::vector<std::string> names;
    AddNames(module.methods, names);
    return names;
}

std::vector<std::string> PropertyNames(const Class& type) {
    std::vector<std::string> names;
    type.FindUpwards([&](const Class& ancestor) {
        for (const Property& property : ancestor.properties) names.push_back(property.name);
        return false;
    });
    return names;
}

}  // namespace ombrix::host
