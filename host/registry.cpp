#include "host/registry.h"

#include <algorithm>
#include <set>

#include "host/error.h"
#include "host/instance.h"
#include "host/text.h"

namespace ombrix::host {
namespace {

/// More than any table can sensibly have: a count above it is rubbish, and reading on would leave the table.
constexpr std::int64_t kMostRows = 65535;
/// Bytes; likewise.
constexpr std::int64_t kMostInstanceData = 1 << 24;

/// `class "X", property 2 ("Value")`
std::string RowName(const std::string& owner, const char* kind, std::size_t index, const std::string& name) {
    return owner + ", " + kind + " " + std::to_string(index + 1) + (name.empty() ? "" : " (" + Quoted(name) + ")");
}

[[noreturn]] void Refuse(const std::string& row, const std::string& reason) { throw Error(row + ": " + reason); }

std::string TextOf(const char* text) { return text == nullptr ? "" : text; }

void CheckVersion(const std::string& owner, std::int64_t version) {
    if (version == kDefinitionVersion) return;
    Refuse(owner, "its record has version " + std::to_string(version) + ", and this host reads version " +
                      std::to_string(kDefinitionVersion) + " alone");
}

void CheckTable(const std::string& owner, const char* kind, std::int64_t count, const void* table) {
    const std::string of = "its record has " + std::to_string(count) + " " + kind;
    if (count < 0 || count > kMostRows) Refuse(owner, of + ", which cannot be");
    if (count > 0 && table == nullptr) Refuse(owner, of + " but no table of them");
}

std::vector<Method> ReadMethods(const std::string& owner, const REALmethodDefinition* rows, std::int64_t count,
                                std::vector<MethodInfo>& infos) {
    CheckTable(owner, "methods", count, rows);
    std::vector<Method> methods;
    std::set<std::string> signatures;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        const std::string row = RowName(owner, "method", i, TextOf(rows[i].declaration));
        Method method;
        method.written = TextOf(rows[i].declaration);
        method.function = rows[i].function;
        try {
            method.declaration = ParseMethod(method.written);
        } catch (const Error& error) {
            Refuse(row, error.what());
        }
        if (method.function == nullptr) Refuse(row, "it has no function");
        if (!signatures.insert(method.declaration.ParameterSignature()).second)
            Refuse(row, "a method of this name with parameters of these types stands above it already");
        infos.push_back({method.declaration.name, method.declaration.parameters, method.declaration.resultType,
                         method.written, rows[i].flags});
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
        if (!names.insert(LowerCase(constants.back().name)).second)
            Refuse(row, "a constant of this name stands above it already");
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
        if (!IsName(property.name)) Refuse(row, "it has no name that the language allows");
        if (!IsName(property.type)) Refuse(row, "it has no type");
        property.kind = KindOf(property.type);
        CheckAccessors(row, definitionRow, property.kind, definition.dataSize);
        if (!names.insert(LowerCase(property.name)).second)
            Refuse(row, "a property of this name stands above it already");
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

Interface MakeInterface(std::string name, const std::vector<std::string>& declarations) {
    Interface result{std::move(name), {}};
    for (const std::string& declaration : declarations)
        result.methods.push_back({ParseMethod(declaration), declaration, nullptr});
    return result;
}

template <class Item>
const Item* FindByName(const std::vector<std::unique_ptr<Item>>& items, std::string_view name) {
    for (const auto& item : items) {
        if (SameName(item->info.name, name)) return item.get();
    }
    return nullptr;
}

}  // namespace

Registry::Registry() {
    interfaces_.push_back(MakeInterface("IGraphicsEffect", {"Apply(source as Picture) as Picture"}));
    interfaces_.push_back(MakeInterface("IGraphicsEffectInPlace", {"ApplyInPlace(source as Picture)"}));
    interfaces_.push_back(MakeInterface("IProgressHandler", {"OnProgress(value as Integer,total as Integer)"}));
}

void Registry::AddClass(REALclassDefinition& definition, const std::string& plugin) {
    CheckNewName("class", definition.name);
    const std::string owner = "class " + Quoted(definition.name);
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
            Refuse(owner, "its superclass " + Quoted(definition.superclass) + " has not been registered");
    }
    if (definition.dataSize < 0 || definition.dataSize > kMostInstanceData) {
        Refuse(owner, std::to_string(definition.dataSize) + " bytes of instance data cannot be");
    }
    added->properties = ReadProperties(owner, definition, added->info.properties);
    added->methods = ReadMethods(owner, definition.methods, definition.methodCount, added->info.methods);
    added->info.constants = ReadConstants(owner, definition.constants, definition.constantCount);
    if (definition.interfaces != nullptr) added->info.interfaces = SplitAtCommas(definition.interfaces);
    for (const std::string& name : added->info.interfaces) {
        const Interface* claimed = FindInterface(name);
        if (claimed == nullptr) Refuse(owner, "this host knows no interface " + Quoted(name));
        for (const Method& method : claimed->methods) {
            if (FindMethod(*added, method.declaration.Signature()) == nullptr)
                Refuse(owner, "it claims " + claimed->name + " but has no method " + Quoted(method.written));
        }
        added->interfaces.push_back(claimed);
    }

    // A class's data follows its superclass's at once: plug-ins reach from the one to the other by the sizes.
    constexpr std::size_t kDataAlignment = 8;
    const std::size_t offset = added->superclass != nullptr ? added->superclass->instanceSize : kHeaderSize;
    const std::size_t size = static_cast<std::size_t>(definition.dataSize);
    added->instanceSize = offset + (size + kDataAlignment - 1) / kDataAlignment * kDataAlignment;
    definition.dataOffset = static_cast<std::int64_t>(offset);
    classes_.push_back(std::move(added));
}

void Registry::AddModule(const REALmoduleDefinition& definition, const std::string& plugin) {
    CheckNewName("module", definition.name);
    const std::string owner = "module " + Quoted(definition.name);
    CheckVersion(owner, definition.version);
    auto added = std::make_unique<Module>();
    added->info.name = definition.name;
    added->info.plugin = plugin;
    added->methods = ReadMethods(owner, definition.methods, definition.methodCount, added->info.methods);
    added->info.constants = ReadConstants(owner, definition.constants, definition.constantCount);
    modules_.push_back(std::move(added));
}

void Registry::CheckNewName(std::string_view what, const char* name) const {
    if (name == nullptr || !IsName(name)) {
        throw Error("a " + std::string(what) + " has no name that the language allows (" + Quoted(TextOf(name)) + ")");
    }
    if (FindClass(name) == nullptr && FindModule(name) == nullptr && FindInterface(name) == nullptr &&
        KindOf(name) == Kind::Object) {
        return;
    }
    Refuse(std::string(what) + " " + Quoted(name), "something of this name exists already");
}

void Registry::CheckTypes(const std::string& plugin) const {
    for (const auto& type : classes_) {
        if (type->info.plugin != plugin) continue;
        const std::string owner = "class " + Quoted(type->info.name);
        for (std::size_t i = 0; i < type->properties.size(); ++i) {
            const Property& property = type->properties[i];
            CheckType(RowName(owner, "property", i, property.name), property.type);
        }
        CheckTypes(owner, type->methods);
    }
    for (const auto& module : modules_) {
        if (module->info.plugin == plugin) CheckTypes("module " + Quoted(module->info.name), module->methods);
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
    Refuse(row, "there is no type " + Quoted(type));
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
    const auto found = std::ranges::find_if(interfaces_, [&](const Interface& i) { return SameName(i.name, name); });
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
        if (SameName(ancestor.info.name, classOrInterface)) return true;
        ++distance;
        for (const Interface* each : ancestor.interfaces) {
            if (SameName(each->name, classOrInterface)) implements = true;
        }
        return false;
    });
    return found != nullptr || implements ? distance : -1;
}

const Method* FindMethod(const Class& type, std::string_view signature) {
    const Method* found = nullptr;
    type.FindUpwards([&](const Class& ancestor) {
        for (const Method& method : ancestor.methods) {
            if (method.declaration.Signature() == signature) found = &method;
        }
        return found != nullptr;
    });
    return found;
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
