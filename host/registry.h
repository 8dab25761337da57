// What plug-ins have registered, checked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/declaration.h"
#include "ombrix/reflection.h"
#include "sdk/definition_records.h"

namespace ombrix::host {

struct Method {
    MethodDeclaration declaration;
    std::string written;  ///< as registered
    REALproc function = nullptr;
    std::int64_t flags = 0;

    MethodInfo Info() const;
};

struct Property {
    std::string name;
    std::string type;
    Kind kind = Kind::Integer;
    const REALpropertyDefinition* row = nullptr;
};

/// A declaration without function. An Error says what is wrong with it.
Method ReadMethod(std::string declaration);

struct Interface {
    std::string name;
    std::vector<Method> methods;  ///< without functions
};

struct Class {
    const REALclassDefinition* definition = nullptr;
    const Class* superclass = nullptr;
    std::vector<const Interface*> interfaces;  ///< without those of superclasses
    std::vector<Property> properties;
    std::vector<Method> methods;
    std::size_t instanceSize = 0;  ///< bytes from the handle to the end of the data
    ClassInfo info;

    /// Visits the class, then its superclasses, until `visit` returns true.
    template <class Visit>
    const Class* FindUpwards(Visit visit) const {
        for (const Class* ancestor = this; ancestor != nullptr; ancestor = ancestor->superclass) {
            if (visit(*ancestor)) return ancestor;
        }
        return nullptr;
    }
};

struct Module {
    std::vector<Method> methods;
    ModuleInfo info;
};

class Registry {
  public:
    Registry();

    /// Adds a class, and notes in its record where its data lies in an object. An Error names class and row when the
    /// record is bad; nothing of it is kept.
    void AddClass(REALclassDefinition& definition, const std::string& plugin);
    void AddModule(const REALmoduleDefinition& definition, const std::string& plugin);

    /// Checks that all types in a plug-in's rows exist. Comes last, since classes may name each other in any order.
    void CheckTypes(const std::string& plugin) const;
    void Remove(const std::string& plugin);
    bool HasAnyOf(const std::string& plugin) const;

    const Class* FindClass(std::string_view name) const;
    const Module* FindModule(std::string_view name) const;
    const Interface* FindInterface(std::string_view name) const;
    /// The class behind a reference that plug-ins were given, or null.
    const Class* FindReference(REALclassRef reference) const;

    const std::vector<std::unique_ptr<Class>>& Classes() const { return classes_; }
    const std::vector<std::unique_ptr<Module>>& Modules() const { return modules_; }

  private:
    void CheckNewName(std::string_view what, const char* name) const;
    void CheckType(const std::string& row, const std::string& type) const;
    void CheckTypes(const std::string& owner, const std::vector<Method>& methods) const;

    std::vector<Interface> interfaces_;
    std::vector<std::unique_ptr<Class>> classes_;
    std::vector<std::unique_ptr<Module>> modules_;
};

/// Steps up from `type` to what is named: 0 for itself, 1 for its superclass; interfaces lie beyond the furthest
/// superclass. -1 when it is neither.
int Distance(const Class& type, std::string_view classOrInterface);

/// Null when there is none. A class's own method comes before a superclass's.
const Method* FindMethod(const Class& type, std::string_view signature);
const Method* FindMethod(const Module& module, std::string_view signature);

/// Without methods that a derived class overrides.
std::vector<const Method*> MethodsNamed(const Class& type, std::string_view name);
std::vector<const Method*> MethodsNamed(const Module& module, std::string_view name);

/// Each once.
std::vector<std::string> MethodNames(const Class& type);
std::vector<std::string> MethodNames(const Module& module);

/// The class's own first.
std::vector<std::string> PropertyNames(const Class& type);

}  // namespace ombrix::host
