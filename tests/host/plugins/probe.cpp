// A well-behaved plug-in with all sorts of accessors and overloads.
#include <cstddef>

#include "sdk/definition_rows.h"
#include "tests/host/plugins/ancestry.h"
#include "tests/host/plugins/services.h"

namespace {

using namespace ombrix;

REALresolver givenResolver = nullptr;

// ---- Base and Middle ----------------------------------------------------------------------------------------

std::int64_t destructions = 0;

extern REALclassDefinition baseClass;
extern REALclassDefinition middleClass;

void ConstructBase(REALobjectStruct* self) {
    auto* data = DataOf<BaseData>(self, baseClass);
    NoteConstruction(*data, 1, data->order | data->tail);
    data->destructions = &destructions;
}

void DestroyBase(REALobjectStruct*) { destructions = destructions * 10 + 1; }

void ConstructMiddle(REALobjectStruct* self) {
    auto* data = DataOf<MiddleData>(self, middleClass);
    NoteConstruction(*data->Base(), 2, data->untouched);
}

void DestroyMiddle(REALobjectStruct*) { destructions = destructions * 10 + 2; }

std::int64_t Level(REALobjectStruct*) { return 1; }
std::int64_t MiddleLevel(REALobjectStruct*) { return 2; }

const REALpropertyDefinition baseProperties[] = {ReadOnlyStandardProperty("Order", "Integer", 0)};
const REALmethodDefinition baseMethods[] = {Method(Level, "Level as Integer")};
const REALmethodDefinition middleMethods[] = {Method(MiddleLevel, "level() AS integer")};

REALclassDefinition baseClass = ClassRecord({.name = "Base",
                                             .dataSize = kBaseDataSize,
                                             .constructor = ConstructBase,
                                             .destructor = DestroyBase,
                                             .properties = baseProperties,
                                             .methods = baseMethods});
REALclassDefinition middleClass = ClassRecord({.name = "Middle",
                                               .superclass = "Base",
                                               .dataSize = sizeof(MiddleData),
                                               .constructor = ConstructMiddle,
                                               .destructor = DestroyMiddle,
                                               .methods = middleMethods});

// ---- Item: accessors ----------------------------------------------------------------------------------------

struct ItemData {
    std::int64_t integer;
    double real;
    std::uint8_t before, boolean, after;
    REALobjectStruct* picture;
    REALobjectStruct* point;
    REALobjectStruct* handler;
    REALobjectStruct* base;
};

extern REALclassDefinition itemClass;
ItemData* ItemOf(REALobjectStruct* self) { return DataOf<ItemData>(self, itemClass); }

void ConstructItem(REALobjectStruct* self) {
    ItemOf(self)->before = 0x5a;
    ItemOf(self)->after = 0xa5;
}

void DestroyItem(REALobjectStruct* self) {
    const Services host(givenResolver);
    const ItemData* data = ItemOf(self);
    for (REALobjectStruct* held : {data->picture, data->point, data->handler, data->base}) host.unlockObject(held);
}

constexpr std::int64_t kParameter = -7;

std::int64_t GetSum(REALobjectStruct* self, std::int64_t parameter) { return ItemOf(self)->integer + parameter; }
void SetSum(REALobjectStruct* self, std::int64_t parameter, std::int64_t value) {
    ItemOf(self)->integer = value - parameter;
}
double GetHalf(REALobjectStruct* self, std::int64_t parameter) {
    return ItemOf(self)->real / 2 + static_cast<double>(parameter);
}
void SetHalf(REALobjectStruct* self, std::int64_t parameter, double value) {
    ItemOf(self)->real = (value - static_cast<double>(parameter)) * 2;
}
/// Any byte but 0 is true.
std::uint8_t GetFlag(REALobjectStruct* self, std::int64_t) { return ItemOf(self)->boolean ? 0x80 : 0; }
void SetFlag(REALobjectStruct* self, std::int64_t, std::uint8_t value) { ItemOf(self)->boolean = value; }
REALobjectStruct* GetHeld(REALobjectStruct* self, std::int64_t) {
    Services(givenResolver).lockObject(ItemOf(self)->picture);
    return ItemOf(self)->picture;
}
void SetHeld(REALobjectStruct* self, std::int64_t, REALobjectStruct* value) {
    const Services host(givenResolver);
    host.unlockObject(ItemOf(self)->picture);
    ItemOf(self)->picture = value;
    host.lockObject(value);
}
std::uint8_t GuardsStand(REALobjectStruct* self, std::int64_t) {
    return ItemOf(self)->before == 0x5a && ItemOf(self)->after == 0xa5;
}

REALpropertyDefinition WithParameter(REALpropertyDefinition row) {
    row.parameter = kParameter;
    return row;
}

const REALpropertyDefinition itemProperties[] = {
    StandardProperty("Number", "Integer", offsetof(ItemData, integer), 4),
    StandardProperty("Real", "Double", offsetof(ItemData, real)),
    StandardProperty("Flag", "Boolean", offsetof(ItemData, boolean)),
    StandardProperty("Photo", "Picture", offsetof(ItemData, picture)),
    StandardProperty("Place", "Point", offsetof(ItemData, point)),
    StandardProperty("Handler", "IProgressHandler", offsetof(ItemData, handler)),
    StandardProperty("Ancestor", "Base", offsetof(ItemData, base)),
    ReadOnlyStandardProperty("NumberToRead", "Integer", offsetof(ItemData, integer)),
    WithParameter(CustomProperty("Sum", "Integer", GetSum, SetSum)),
    WithParameter(CustomProperty("Half", "Double", GetHalf, SetHalf)),
    CustomProperty("CustomFlag", "Boolean", GetFlag, SetFlag),
    CustomProperty("Held", "Picture", GetHeld, SetHeld),
    ReadOnlyCustomProperty("GuardsStand", "Boolean", GuardsStand),
};

// ---- Item: methods ------------------------------------------------------------------------------------------

template <std::int64_t Number, class... Parameters>
std::int64_t Pick(REALobjectStruct*, Parameters...) {
    return Number;
}
using Handle = REALobjectStruct*;

std::int64_t PickWithMask(Handle, Handle source, std::int64_t value, Handle mask) {
    return 400 + value * 10 + (source != nullptr ? 1 : 0) + (mask != nullptr ? 2 : 0);
}

/// More than registers hold.
double Mixed(Handle, std::int64_t a, double b, std::uint8_t c, Handle d, std::int64_t e, std::uint8_t f, double g,
             std::int64_t h, Handle i, std::uint8_t j, double k, std::int64_t l) {
    return static_cast<double>(a) + b * 10 + c * 100 + (d != nullptr) * 1000 + static_cast<double>(e) * 1e4 + f * 1e5 +
           g * 1e6 + static_cast<double>(h) * 1e7 + (i != nullptr) * 1e8 + j * 1e9 + k * 1e10 +
           static_cast<double>(l) * 1e11;
}

std::uint8_t Invert(Handle, std::uint8_t value) { return value == 0 ? 0x40 : 0; }
void SetNumber(Handle self, std::int64_t value) { ItemOf(self)->integer = value; }

Handle Same(Handle, Handle source) {
    Services(givenResolver).lockObject(source);
    return source;
}

/// Returns the number of reports to `handler` or, without one, to the property's.
std::int64_t Report(Handle self, Handle handler, std::int64_t count) {
    if (handler == nullptr) handler = ItemOf(self)->handler;
    const auto report = reinterpret_cast<void (*)(Handle, std::int64_t, std::int64_t)>(
        Services(givenResolver).loadMethod(handler, "OnProgress(value as Integer,total as Integer)"));
    if (report == nullptr) return 0;
    for (std::int64_t i = 1; i <= count; ++i) report(handler, i, count);
    return count;
}

/// As plug-ins make pictures.
Handle MakePicture(Handle, std::int64_t width, std::int64_t height, std::int64_t depth) {
    const Services host(givenResolver);
    const Handle picture = host.createInstance(host.findClass("Picture"));
    const auto construct = reinterpret_cast<void (*)(Handle, std::int64_t, std::int64_t, std::int64_t)>(
        host.loadMethod(picture, "Constructor(width as Integer, height as Integer, Depth as Integer)"));
    construct(picture, width, height, depth);
    return picture;
}

/// Reads a Point's properties through the host.
std::int64_t Across(Handle, Handle point) {
    const Services host(givenResolver);
    std::int64_t x = 0, y = 0;
    if (!host.integerProperty(point, "x", &x) || !host.integerProperty(point, "Y", &y)) return -1;
    return x * 1000 + y;
}

const REALmethodDefinition itemMethods[] = {
    Method(Pick<1, std::int64_t>, "Pick(a as Integer) as Integer"),
    Method(Pick<2, double>, "Pick(a as Double) as Integer"),
    Method(Pick<3, Handle>, "Pick(source as Picture) as Integer"),
    Method(PickWithMask, "Pick(source as Picture,value as Integer, mask as Picture) as Integer", 4),
    Method(Pick<5, Handle, Handle>, "Pick(source as Picture, location as Point) as Integer"),
    Method(Pick<6, Handle>, "Pick(base as Base) as Integer"),
    Method(Pick<7, Handle>, "Pick(middle as Middle) as Integer"),
    Method(Pick<8, std::uint8_t>, "\t PICK (Flag  AS\tbOOLEAN )as INTEGER "),
    Method(Pick<9>, "Pick as Integer"),
    Method(Mixed,
           "Mixed(a as Integer, b as Double, c as Boolean, d as Picture, e as Integer, f as Boolean, g as Double, "
           "h as Integer, i as Point, j as Boolean, k as Double, l as Integer) as Double"),
    Method(Invert, "Invert(value as Boolean) as Boolean"),
    Method(SetNumber, "Number(assigns value as Integer)"),
    Method(Same, "Apply( SOURCE as picture ) AS picture"),
    Method(Report, "Report(handler as IProgressHandler, count as Integer) as Integer"),
    Method(MakePicture, "MakePicture(width as Integer, height as Integer, depth as Integer) as Picture"),
    Method(Across, "Across(point as Point) as Integer"),
};

const REALconstantDefinition itemConstants[] = {Constant("LOWEST = -9223372036854775808"), Constant("  SPACED=+7 ")};

REALclassDefinition itemClass = ClassRecord({.name = "Item",
                                             .interfaces = "IGraphicsEffect",
                                             .dataSize = sizeof(ItemData),
                                             .constructor = ConstructItem,
                                             .destructor = DestroyItem,
                                             .properties = itemProperties,
                                             .methods = itemMethods,
                                             .constants = itemConstants});

// ---- The module ---------------------------------------------------------------------------------------------

std::int64_t TakeDestructions() {
    const std::int64_t digits = destructions;
    destructions = 0;
    return digits;
}

Handle SameOf(Handle picture) { return Same(nullptr, picture); }

const REALmethodDefinition moduleMethods[] = {Method(TakeDestructions, "TakeDestructions() as Integer"),
                                              Method(SameOf, "Same(picture as Picture) as Picture", 0x10)};
const REALconstantDefinition moduleConstants[] = {Constant("ANSWER = 42")};
REALmoduleDefinition module = ModuleRecord("ProbeModule", moduleMethods, moduleConstants);

}  // namespace

OMBRIX_TEST_EXPORT REALresolver GivenResolver() { return givenResolver; }

OMBRIX_TEST_EXPORT void REALPluginMain(REALresolver resolver) {
    givenResolver = resolver;
    destructions = 0;
    const Services host(resolver);
    if (host.registerPluginVersion != nullptr) host.registerPluginVersion(13);
    if (host.registerModule != nullptr) host.registerModule(&module);
    if (host.registerClass == nullptr) return;
    for (REALclassDefinition* definition : {&baseClass, &middleClass, &itemClass}) host.registerClass(definition);
}
