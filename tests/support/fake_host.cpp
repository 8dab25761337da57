#include "tests/support/fake_host.h"

#include <dlfcn.h>
#include <sys/mman.h>

#include <cstring>
#include <sstream>
#include <stdexcept>

#include "platform/core_graphics.h"
#include "platform/multiprocessing.h"
#include "sdk/plugin_main.h"

namespace ombrix::testing {
namespace {

FakeHost* current = nullptr;

FakePicture* PictureOf(REALobjectStruct* handle) { return reinterpret_cast<FakePicture*>(handle); }

REALobjectStruct* HandlerHandle() {
    static int handler;
    return reinterpret_cast<REALobjectStruct*>(&handler);
}

void Allocate(FakePicture& picture, std::int64_t width, std::int64_t height, std::int64_t bits, int padding) {
    picture.width = static_cast<std::int32_t>(width);
    picture.height = static_cast<std::int32_t>(height);
    picture.bits = static_cast<std::int32_t>(bits);
    const auto used = static_cast<std::size_t>(width > 0 && height > 0 ? width * bits / 8 : 0);
    picture.rowBytes = used + static_cast<std::size_t>(padding);
    const auto rows = static_cast<std::size_t>(height > 0 ? height : 0);
    picture.bytes = std::make_unique<GuardedBytes>(rows ? (rows - 1) * picture.rowBytes + used : 0);
    for (std::size_t i = 0; i < picture.bytes->size(); ++i) {
        picture.bytes->data()[i] = static_cast<std::uint8_t>(i * 37 + i / 251);
    }
}

// ---- The services ----

void RegisterPluginVersion(int version) { current->announcedVersion = version; }
double Version() { return current->version; }

std::int32_t RegisterClass(REALclassDefinition* record) {
    record->dataOffset = 16;
    if (record->superclass) {
        const REALclassDefinition* super = current->classes.at(record->superclass);
        record->dataOffset = super->dataOffset + super->dataSize;
    }
    current->classes[record->name] = record;
    current->registered.push_back(std::string("class ") + record->name);
    return 1;
}

std::int32_t RegisterModule(REALmoduleDefinition* record) {
    current->modules[record->name] = record;
    current->registered.push_back(std::string("module ") + record->name);
    return 1;
}

REALclassRef ClassRef(const char* name) {
    return std::strcmp(name, "Picture") == 0 ? reinterpret_cast<REALclassRef>(current) : nullptr;
}

REALobjectStruct* CreateInstance(REALclassRef) {
    if (current->refusesInstances) return nullptr;
    current->pictures.push_back(std::make_unique<FakePicture>());
    current->pictures.back()->name = "result";
    return current->pictures.back()->Handle();
}

void LockObject(REALobjectStruct* object) {
    if (object && object != HandlerHandle()) ++PictureOf(object)->references;
}

void UnlockObject(REALobjectStruct* object) {
    if (!object || object == HandlerHandle()) return;
    if (--PictureOf(object)->references < 0) throw std::logic_error("over-release");
    current->log.push_back("release " + PictureOf(object)->name);
}

void Construct(REALobjectStruct* object, std::int64_t width, std::int64_t height, std::int64_t depth) {
    FakePicture& picture = *PictureOf(object);
    Allocate(picture, width + current->destinationWidthError, height,
             current->destinationBits ? current->destinationBits : static_cast<std::int32_t>(depth),
             current->rowPadding);
    picture.refusesLock = current->refusesDestinationLock;
}

REALobjectStruct* GetMask(REALobjectStruct* object, bool create) {
    FakePicture* mask = PictureOf(object)->mask;
    if (create) throw std::logic_error("no call of the plug-in creates a mask");
    if (mask) ++mask->references;
    return mask ? mask->Handle() : nullptr;
}

void SetMask(REALobjectStruct* object, REALobjectStruct* mask) {
    PictureOf(object)->mask = PictureOf(mask);
    LockObject(mask);
}

void OnProgress(REALobjectStruct* handler, std::int64_t value, std::int64_t total) {
    if (handler != HandlerHandle()) throw std::logic_error("another handler's report");
    current->reports.emplace_back(value, total);
}

void DrawPicture(REALobjectStruct* graphics, REALobjectStruct* image, std::int64_t x, std::int64_t y, std::int64_t w1,
                 std::int64_t h1, std::int64_t sx, std::int64_t sy, std::int64_t w2, std::int64_t h2) {
    std::ostringstream line;
    line << PictureOf(graphics)->name << " draws " << PictureOf(image)->name;
    for (const std::int64_t number : {x, y, w1, h1, sx, sy, w2, h2}) line << ' ' << number;
    current->log.push_back(line.str());
}

void* LoadObjectMethod(REALobjectStruct* object, const char* declaration) {
    static const std::map<std::string, void*> pictureMethods = {
        {"Constructor(width as Integer, height as Integer, Depth as Integer)", reinterpret_cast<void*>(Construct)},
        {"Mask(Create as Boolean) as Picture", reinterpret_cast<void*>(GetMask)},
        {"Mask(assigns newMask as Picture)", reinterpret_cast<void*>(SetMask)},
        {"DrawPicture(image as Picture,x as Integer,y as Integer,w1 as Integer,h1 as Integer,sx as Integer,"
         "sy as Integer,w2 as Integer,h2 as Integer)",
         reinterpret_cast<void*>(DrawPicture)},
    };
    current->asked.push_back(declaration);
    if (current->missing.contains(declaration)) return nullptr;
    if (object == HandlerHandle()) {
        return std::strcmp(declaration, "OnProgress(value as Integer,total as Integer)") == 0
                   ? reinterpret_cast<void*>(OnProgress)
                   : nullptr;
    }
    const auto found = pictureMethods.find(declaration);
    return found == pictureMethods.end() ? nullptr : found->second;
}

std::int8_t LockPicture(REALobjectStruct* object, REALpictureDescription* description, std::uint32_t type) {
    FakePicture& picture = *PictureOf(object);
    if (picture.refusesLock || type != kBitmapContextPicture) return 0;
    ++picture.locks;
    current->log.push_back("lock " + picture.name);
    description->type = type;
    description->data = &picture;
    description->width = picture.width;
    description->height = picture.height;
    return -1;  // true
}

std::int8_t LockPictureAsItIs(REALobjectStruct* object, REALpictureDescription* description) {
    FakePicture& picture = *PictureOf(object);
    if (!picture.isDrawing) return LockPicture(object, description, kBitmapContextPicture);
    if (picture.refusesLock) return 0;
    ++picture.locks;
    *description = {3, 0, nullptr, picture.width, picture.height, 0};
    return 1;
}

std::int8_t GetObject(REALobjectStruct*, const char* name, REALobjectStruct** value) {
    if (current->hasNoGraphics || std::strcmp(name, "Graphics") != 0) return 0;
    *value = current->NewPicture("graphics", 0, 0, 32)->Handle();
    return 1;
}

std::int8_t GetInteger(REALobjectStruct* object, const char* name, std::int64_t* value) {
    const FakePicture& point = *PictureOf(object);
    *value = 12345;
    if (point.unreadable.find(name) != std::string::npos) return 0;
    *value = std::strcmp(name, "x") == 0 ? point.x : point.y;
    return 1;
}

void UnlockPicture(REALobjectStruct* object) {
    if (--PictureOf(object)->locks < 0) throw std::logic_error("unlock without lock");
    current->log.push_back("unlock " + PictureOf(object)->name);
}

void* Resolve(const char* name) {
    static const std::map<std::string, void*> services = {
        {"RegisterPluginVersion", reinterpret_cast<void*>(RegisterPluginVersion)},
        {"REALGetRBVersion", reinterpret_cast<void*>(Version)},
        {"PluginRegisterClass", reinterpret_cast<void*>(RegisterClass)},
        {"PluginRegisterModule", reinterpret_cast<void*>(RegisterModule)},
        {"pluginObjectType", reinterpret_cast<void*>(ClassRef)},
        {"CreateInstance", reinterpret_cast<void*>(CreateInstance)},
        {"REALLoadObjectMethod", reinterpret_cast<void*>(LoadObjectMethod)},
        {"REALLockPictureDescription", reinterpret_cast<void*>(LockPicture)},
        {"lockPictureDescription", reinterpret_cast<void*>(LockPictureAsItIs)},
        {"REALGetPropValueObject", reinterpret_cast<void*>(GetObject)},
        {"REALGetPropValueInteger", reinterpret_cast<void*>(GetInteger)},
        {"unlockPictureDescription", reinterpret_cast<void*>(UnlockPicture)},
        {"REALLockObject", reinterpret_cast<void*>(LockObject)},
        {"REALUnlockObject", reinterpret_cast<void*>(UnlockObject)},
    };
    current->asked.push_back(name);
    const auto found = services.find(name);
    return found == services.end() || current->missing.contains(name) ? nullptr : found->second;
}

/// The platform library's function that one here stands in for.
template <class Function>
Function* Behind(Function*, const char* name) {
    static void* library = dlopen(OMBRIX_BUILD_DIR "/libombrix_platform.so", RTLD_NOW | RTLD_LOCAL);
    return reinterpret_cast<Function*>(dlsym(library, name));
}

}  // namespace

GuardedBytes::GuardedBytes(std::size_t size) : size_(size) {
    constexpr std::size_t page = 4096;
    mapped_ = (size + page - 1) / page * page + page;
    void* mapping = mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapping == MAP_FAILED || mprotect(static_cast<std::uint8_t*>(mapping) + mapped_ - page, page, PROT_NONE) != 0) {
        throw std::runtime_error("no memory");
    }
    mapping_ = static_cast<std::uint8_t*>(mapping);
    data_ = mapping_ + mapped_ - page - size;
}

GuardedBytes::~GuardedBytes() { munmap(mapping_, mapped_); }

FakeEffect::FakeEffect(const char* className) : record_(current->classes.at(className)) {
    memory_.resize(static_cast<std::size_t>(record_->dataOffset + record_->dataSize));
    if (record_->superclass) current->classes.at(record_->superclass)->constructor(Handle());
    record_->constructor(Handle());
}

FakeEffect::~FakeEffect() {
    record_->destructor(Handle());
    if (record_->superclass) current->classes.at(record_->superclass)->destructor(Handle());
}

MPImageFilterData& FakeEffect::Base() { return *reinterpret_cast<MPImageFilterData*>(memory_.data() + 16); }

FakeHost::FakeHost() { current = this; }
FakeHost::~FakeHost() { current = nullptr; }

void FakeHost::Start() { REALPluginMain(Resolve); }

FakePicture* FakeHost::NewPicture(std::string name, int width, int height, int bits, int padding) {
    pictures.push_back(std::make_unique<FakePicture>());
    pictures.back()->name = std::move(name);
    Allocate(*pictures.back(), width, height, bits, padding);
    return pictures.back().get();
}

FakePicture* FakeHost::NewPoint(std::int64_t x, std::int64_t y) {
    FakePicture* point = NewPicture("point", 0, 0, 32);
    point->x = x;
    point->y = y;
    return point;
}

REALobjectStruct* FakeHost::ProgressHandler() { return HandlerHandle(); }

int FakeHost::LiveResults() const {
    int live = 0;
    for (const auto& picture : pictures) live += picture->name == "result" && picture->references > 0;
    return live;
}

int FakeHost::Locks() const {
    int locks = 0;
    for (const auto& picture : pictures) locks += picture->locks;
    return locks;
}

}  // namespace ombrix::testing

// ---- The platform's functions, which come before the library's ----

using ombrix::testing::FakePicture;

#define EXPORT __attribute__((visibility("default")))

extern "C" {

EXPORT void* CGBitmapContextGetData(CGContextRef context) {
    const auto* picture = reinterpret_cast<FakePicture*>(context);
    return picture->hidesBase ? nullptr : picture->bytes->data();
}
EXPORT std::size_t CGBitmapContextGetBytesPerRow(CGContextRef context) {
    return reinterpret_cast<FakePicture*>(context)->rowBytes;
}
EXPORT std::size_t CGBitmapContextGetBitsPerPixel(CGContextRef context) {
    return static_cast<std::size_t>(reinterpret_cast<FakePicture*>(context)->bits);
}

EXPORT unsigned long MPProcessorsScheduled() { return ombrix::testing::current->processors; }

EXPORT std::int32_t MPCreateQueue(MPQueueID* queue) {
    if (ombrix::testing::current->failQueues-- > 0) return -1;
    ++ombrix::testing::current->queuesAlive;
    static const auto real = ombrix::testing::Behind(MPCreateQueue, "MPCreateQueue");
    return real(queue);
}
EXPORT std::int32_t MPCreateTask(std::int32_t (*entry)(void*), void* parameter, unsigned long stackSize,
                                 MPQueueID queue, void* termination1, void* termination2, std::uint32_t options,
                                 MPTaskID* task) {
    if (ombrix::testing::current->failTasks.contains(ombrix::testing::current->tasksStarted++)) return -1;
    static const auto real = ombrix::testing::Behind(MPCreateTask, "MPCreateTask");
    return real(entry, parameter, stackSize, queue, termination1, termination2, options, task);
}
EXPORT std::int32_t MPWaitOnQueue(MPQueueID queue, void** p1, void** p2, void** p3, std::int32_t duration) {
    if (ombrix::testing::current->failWaits-- > 0) return ombrix::testing::current->waitStatus;
    static const auto real = ombrix::testing::Behind(MPWaitOnQueue, "MPWaitOnQueue");
    return real(queue, p1, p2, p3, duration);
}
EXPORT std::int32_t MPDeleteQueue(MPQueueID queue) {
    --ombrix::testing::current->queuesAlive;
    static const auto real = ombrix::testing::Behind(MPDeleteQueue, "MPDeleteQueue");
    return real(queue);
}
}
