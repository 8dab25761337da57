// What plug-ins have registered, checked and made ready for use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "frame/definition_records.h"
#include "host/declaration.h"
#include "host/reflection.h"

namespace ombrix::host {

struct Method {
    MethodDeclaration declaration;
    std::string written;  ///< the declaration as registered
    REALproc function = nullptr;
};

struct Property {
    std::string name;
    std::string type;
    Kind kind = Kind::Integer;
    const REALpropertyDefinition* row = nullptr;
};

/// What a class may promise to have.
struct Interface {
    std::string name;
    std::vector<Method> methods;  ///< without functions
};

struct Class {
    const REALclassDefinition* definition = nullptr;
    const Class* superclass = nullptr;
    std::vector<const Interface*> interfaces;  ///< of this class alone
    std::vector<Property> properties;
    std::vector<Method> methods;
    std::size_t instanceSize = 0;  ///< bytes from the handle to the end of the data
    ClassInfo info;

    /// Calls `visit` with the class and then its superclasses, until it answers true.
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

    /// Takes a class in, and writes into its record where its data lies in an instance. An Error that names class and
    /// row when the record cannot be used; nothing of it is kept then.
    void AddClass(REALclassDefinition& definition, const std::string& plugin);
    void AddModule(const REALmoduleDefinition& definition, const std::string& plugin);

    /// Checks that every type named in a plug-in's rows exists. Classes may name each other in any order, so this
    /// comes after the plug-in's last record.
    void CheckTypes(const std::string& plugin) const;
    /// Forgets what a plug-in has registered.
    void Remove(const std::string& plugin);
    bool HasAnyOf(const std::string& plugin) const;

    const Class* FindClass(std::string_view name) const;
    const Module* FindModule(std::string_view name) const;
    const Interface* FindInterface(std::string_view name) const;
    /// The class that a plug-in means by a reference that it was given, or null.
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

/// How an object of `type` counts as one of what is named: 0 for its own class, 1 for the superclass and so on, one
/// more than for the furthest superclass for an interface; -1 when it does not.
int Distance(const Class& type, std::string_view classOrInterface);

/// The method of the class or its superclasses with this signature, or null.
const Method* FindMethod(const Class& type, std::string_view signature);

/// The names of all properties, of the class itself first.
std::vector<std::string> PropertyNames(const Class& type);

}  // namespace ombrix::host
