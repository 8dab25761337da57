// Classes derived from another plug-in's and from the host's own.
#include "sdk/definition_rows.h"
#include "tests/host/plugins/ancestry.h"
#include "tests/host/plugins/services.h"

namespace {

using namespace ombrix;

extern REALclassDefinition grandClass;
GrandData* GrandOf(REALobjectStruct* self) { return DataOf<GrandData>(self, grandClass); }

void Construct(REALobjectStruct* self) {
    NoteConstruction(*GrandOf(self)->Middle()->Base(), 3, GrandOf(self)->untouched);
}

void Destroy(REALobjectStruct* self) {
    std::int64_t& destructions = *GrandOf(self)->Middle()->Base()->destructions;
    destructions = destructions * 10 + 3;
}

const REALpropertyDefinition properties[] = {StandardProperty("Own", "Integer", 0)};
REALclassDefinition grandClass = ClassRecord({.name = "Grand",
                                              .superclass = "Middle",
                                              .dataSize = sizeof(GrandData),
                                              .constructor = Construct,
                                              .destructor = Destroy,
                                              .properties = properties});

const REALpropertyDefinition titledProperties[] = {StandardProperty("Title", "Integer", 0)};
REALclassDefinition titledClass =
    ClassRecord({.name = "TitledPicture", .superclass = "Picture", .dataSize = 8, .properties = titledProperties});

}  // namespace

OMBRIX_TEST_EXPORT void REALPluginMain(REALresolver resolver) {
    const Services host(resolver);
    host.registerClass(&grandClass);
    host.registerClass(&titledClass);
}
