#include "bench/bench_host.h"

#include <map>
#include <span>
#include <stdexcept>
#include <string>

#include "sdk/plugin_main.h"

namespace ombrix::bench {
namespace {

/// Bytes of an instance that a host keeps for itself, before the data of its classes.
constexpr std::int64_t kHeaderSize = 16;

std::map<std::string, REALclassDefinition*, std::less<>> classes;
BenchPicture* new_picture = nullptr;

double Version() { return 2024.0; }

std::int32_t RegisterClass(REALclassDefinition* record) {
    record->dataOffset = kHeaderSize;
    if (record->superclass) {
        const REALclassDefinition* super = classes.at(record->superclass);
        record->dataOffset = super->dataOffset + super->dataSize;
    }
    classes[record->name] = record;
    return 1;
}

std::int32_t RegisterModule(REALmoduleDefinition*) { return 1; }

// Any address but null stands for the class Picture.
REALclassRef ClassRef(const char*) { return reinterpret_cast<REALclassRef>(&classes); }

REALobjectStruct* CreateInstance(REALclassRef) { return new_picture ? new_picture->Handle() : nullptr; }

// Pictures outlive every call here, so references are not counted.
void LeaveReferences(REALobjectStruct*) {}

// The picture is there already.
void Construct(REALobjectStruct*, std::int64_t, std::int64_t, std::int64_t) {}

REALobjectStruct* NoMask(REALobjectStruct*, bool) { return nullptr; }

void* LoadObjectMethod(REALobjectStruct*, const char* declaration) {
    static const std::map<std::string_view, void*> methods = {
        {"Constructor(width as Integer, height as Integer, Depth as Integer)", reinterpret_cast<void*>(Construct)},
        {"Mask(Create as Boolean) as Picture", reinterpret_cast<void*>(NoMask)},
    };
    const auto found = methods.find(declaration);
    return found == methods.end() ? nullptr : found->second;
}

std::int8_t LockPicture(REALobjectStruct* handle, REALpictureDescription* description, std::uint32_t type) {
    const BenchPicture& picture = BenchPicture::Of(handle);
    *description = {type, 0, picture.Context(), picture.Extent().width, picture.Extent().height, 0};
    return 1;
}

void UnlockPicture(REALobjectStruct*) {}

void* Resolve(const char* name) {
    static const std::map<std::string_view, void*> services = {
        {"REALGetRBVersion", reinterpret_cast<void*>(Version)},
        {"PluginRegisterClass", reinterpret_cast<void*>(RegisterClass)},
        {"PluginRegisterModule", reinterpret_cast<void*>(RegisterModule)},
        {"pluginObjectType", reinterpret_cast<void*>(ClassRef)},
        {"CreateInstance", reinterpret_cast<void*>(CreateInstance)},
        {"REALLoadObjectMethod", reinterpret_cast<void*>(LoadObjectMethod)},
        {"REALLockPictureDescription", reinterpret_cast<void*>(LockPicture)},
        {"unlockPictureDescription", reinterpret_cast<void*>(UnlockPicture)},
        {"REALLockObject", reinterpret_cast<void*>(LeaveReferences)},
        {"REALUnlockObject", reinterpret_cast<void*>(LeaveReferences)},
    };
    const auto found = services.find(name);
    return found == services.end() ? nullptr : found->second;
}

const REALclassDefinition* FindClass(std::string_view name) {
    const auto found = classes.find(name);
    if (found == classes.end()) throw std::logic_error("no class " + std::string(name));
    return found->second;
}

}  // namespace

void StartHost() { REALPluginMain(Resolve); }

void SetNewPicture(BenchPicture& picture) { new_picture = &picture; }

Effect::Effect(std::string_view className) : record_(FindClass(className)) {
    memory_.resize(static_cast<std::size_t>(record_->dataOffset + record_->dataSize));
    FindClass(record_->superclass)->constructor(Handle());
    record_->constructor(Handle());
    apply_ = reinterpret_cast<decltype(apply_)>(Method("Apply(source as Picture) as Picture"));
    applyInPlace_ = reinterpret_cast<decltype(applyInPlace_)>(Method("ApplyInPlace(source as Picture)"));
}

Effect::~Effect() {
    record_->destructor(Handle());
    FindClass(record_->superclass)->destructor(Handle());
}

MPImageFilterData& Effect::Base() { return *BaseDataOf(Data()); }

const REALpropertyDefinition& Effect::Property(std::string_view name) const {
    for (const auto& property : std::span(record_->properties, static_cast<std::size_t>(record_->propertyCount))) {
        if (property.name == name) return property;
    }
    throw std::logic_error("no property " + std::string(name));
}

REALproc Effect::Method(std::string_view declaration) const {
    for (const auto& method : std::span(record_->methods, static_cast<std::size_t>(record_->methodCount))) {
        if (method.declaration == declaration) return method.function;
    }
    return nullptr;
}

}  // namespace ombrix::bench
