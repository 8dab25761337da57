// A plug-in with the bad record that OMBRIX_TEST_RECORD names, or a good one.
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <string>

#include "sdk/definition_rows.h"
#include "tests/host/plugins/services.h"

namespace {

using namespace ombrix;

void Nothing(REALobjectStruct*) {}
REALobjectStruct* NoPicture(REALobjectStruct*, REALobjectStruct*) { return nullptr; }

/// Good rows, for each case to spoil.
struct Records {
    REALpropertyDefinition properties[2] = {StandardProperty("Left", "Integer", 0),
                                            StandardProperty("Value", "Boolean", 15)};
    REALmethodDefinition methods[2] = {Method(Nothing, "Rest()"),
                                       Method(NoPicture, "Apply(source as Picture) as Picture")};
    REALconstantDefinition constants[2] = {Constant("ONE = 1"), Constant("TWO = 2")};
    REALclassDefinition type = ClassRecord({.name = "Bad",
                                            .interfaces = "IGraphicsEffect",
                                            .dataSize = 16,
                                            .properties = properties,
                                            .methods = methods,
                                            .constants = constants});
    REALmethodDefinition moduleMethods[1] = {Method(Nothing, "Rest(other as Bad)")};
    REALmoduleDefinition module = ModuleRecord("BadModule", moduleMethods, constants);
    std::int32_t version = 13;
};

Records records;

const std::map<std::string, std::function<void()>> kCases = {
    {"version", [] { records.version = 12; }},
    {"class version", [] { records.type.version = 14; }},
    {"module version", [] { records.module.version = 0; }},
    {"superclass", [] { records.type.superclass = "Missing"; }},
    {"own superclass", [] { records.type.superclass = "Bad"; }},
    {"no name", [] { records.type.name = nullptr; }},
    {"class name", [] { records.type.name = "Not a name"; }},
    {"host's name", [] { records.type.name = "picture"; }},
    {"type's name", [] { records.type.name = "Double"; }},
    {"module's name", [] { records.module.name = "BAD"; }},
    {"data size", [] { records.type.dataSize = -1; }},
    {"property count", [] { records.type.propertyCount = -2; }},
    {"rows without table", [] { records.type.methods = nullptr; }},
    {"constant count", [] { records.module.constantCount = 1 << 20; }},
    {"property name", [] { records.properties[1].name = nullptr; }},
    {"property twice", [] { records.properties[1].name = "LEFT"; }},
    {"property type", [] { records.properties[0].type = "Pictur"; }},
    {"property outside", [] { records.properties[1].parameter = 16; }},
    {"property half outside", [] { records.properties[0].parameter = 9; }},
    {"property before", [] { records.properties[0].parameter = -1; }},
    {"no getter", [] { records.properties[1].getter.word = kNoAccessor; }},
    {"no function", [] { records.methods[0].function = nullptr; }},
    {"declaration", [] { records.methods[0].declaration = "Rest(a Integer)"; }},
    {"open declaration", [] { records.methods[0].declaration = "Rest(a as Integer"; }},
    {"no declaration", [] { records.methods[0].declaration = nullptr; }},
    {"words after", [] { records.methods[0].declaration = "Rest() as Integer 5"; }},
    {"assigns first", [] { records.methods[0].declaration = "Rest(assigns a as Integer, b as Integer)"; }},
    {"parameter type", [] { records.methods[0].declaration = "Rest(a as Missing)"; }},
    {"result type", [] { records.moduleMethods[0].declaration = "Rest() as Missing"; }},
    {"method twice", [] { records.methods[0].declaration = "apply(other as PICTURE)"; }},
    {"constant", [] { records.constants[1].declaration = "TWO 2"; }},
    {"constant's value", [] { records.constants[1].declaration = "TWO = 9223372036854775808"; }},
    {"constant twice", [] { records.constants[1].declaration = "one = 2"; }},
    {"interface", [] { records.type.interfaces = "IGraphicsEffect,IMissing"; }},
    {"interface method", [] { records.type.interfaces = "IGraphicsEffect,IGraphicsEffectInPlace"; }},
    {"interface result", [] { records.methods[1].declaration = "Apply(source as Picture) as Bad"; }},
};

}  // namespace

OMBRIX_TEST_EXPORT void REALPluginMain(REALresolver resolver) {
    // Rebuilt in place, since the records point into each other.
    std::destroy_at(&records);
    new (&records) Records;
    const char* wanted = std::getenv("OMBRIX_TEST_RECORD");
    if (wanted != nullptr) kCases.at(wanted)();
    const Services host(resolver);
    host.registerPluginVersion(records.version);
    host.registerClass(&records.type);
    host.registerModule(&records.module);
}
