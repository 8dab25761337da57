#include <cstddef>
#include <iterator>

#include "host/own_classes.h"

namespace ombrix::host {
namespace {

const REALpropertyDefinition kProperties[] = {
    StoredProperty("x", "Integer", offsetof(PointData, x)),
    StoredProperty("y", "Integer", offsetof(PointData, y)),
};

REALclassDefinition pointDefinition = MakeDefinition({
    .name = kPointClass,
    .dataSize = sizeof(PointData),
    .properties = kProperties,
});

}  // namespace

REALclassDefinition& PointDefinition() { return pointDefinition; }

PointData& PointOf(REALobjectStruct* point) { return *static_cast<PointData*>(ClassData(point, pointDefinition)); }

}  // namespace ombrix::host
