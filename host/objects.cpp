#include "host/objects.h"

#include <algorithm>
#include <cstdlib>

#include "text/phrases.h"

#if defined(__SANITIZE_ADDRESS__)
#define OMBRIX_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define OMBRIX_ADDRESS_SANITIZER 1
#endif
#endif
#ifdef OMBRIX_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace ombrix::host {
namespace {

constexpr std::size_t kMostDead = 256;

/// For memory that is kept back.
void ForbidAccess([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) {
#ifdef OMBRIX_ADDRESS_SANITIZER
    ASAN_POISON_MEMORY_REGION(memory, size);
#endif
}

}  // namespace

ObjectStore::~ObjectStore() {
    while (!dead_.empty()) FreeOldestDead();
}

REALobjectStruct* ObjectStore::Create(const Class& type) {
    void* memory = std::calloc(1, type.instanceSize);
    if (memory == nullptr) return nullptr;
    auto* object = static_cast<REALobjectStruct*>(memory);
    object->type = &type;
    object->references = 1;
    object->serial = ++serials_;
    live_.insert(object);

    std::vector<const Class*> ancestry;
    type.FindUpwards([&](const Class& ancestor) { return ancestry.push_back(&ancestor), false; });
    for (auto ancestor = ancestry.rbegin(); ancestor != ancestry.rend(); ++ancestor) {
        if ((*ancestor)->definition->constructor == nullptr) continue;
        const Watch::Call call(watch_, (*ancestor)->info.name + ".Constructor");
        (*ancestor)->definition->constructor(object);
    }
    return object;
}

std::string ObjectStore::Describe(REALobjectStruct* handle) const {
    if (handle == nullptr) return "nil";
    if (IsLive(handle)) return text::WithArticle(handle->type->info.name);
    for (auto dead = dead_.rbegin(); dead != dead_.rend(); ++dead) {
        if (dead->memory == handle) return dead->description;
    }
    return "something that is no object";
}

void ObjectStore::Release(REALobjectStruct* object) {
    // During its destructors an object only counts: it is being destroyed already.
    if (object->references <= object->held && !object->finished) {
        watch_.Fault("released " + Describe(object) + " once more than it had retained it");
        return;
    }
    if (--object->references == 0 && !object->finished) Destroy(object);
}

void ObjectStore::Hold(REALobjectStruct* object) {
    ++object->references;
    ++object->held;
}

void ObjectStore::LetGo(REALobjectStruct* object) {
    --object->held;
    if (--object->references == 0 && !object->finished) Destroy(object);
}

void ObjectStore::Adopt(REALobjectStruct* object) {
    if (object->references <= object->held) {
        watch_.Fault("handed out " + Describe(object) + " without a reference for the receiver");
        ++object->references;
    }
    ++object->held;
}

void ObjectStore::Destroy(REALobjectStruct* object) {
    RunDestructors(object);
    Bury(object);
}

void ObjectStore::RunDestructors(REALobjectStruct* object) {
    object->finished = true;
    const std::int64_t references = object->references;
    object->type->FindUpwards([&](const Class& ancestor) {
        if (ancestor.definition->destructor != nullptr) {
            const Watch::Call call(watch_, ancestor.info.name + ".Destructor");
            ancestor.definition->destructor(object);
        }
        return false;
    });
    if (object->references > references) watch_.Fault("kept a reference to " + Describe(object) + " being destroyed");
}

void ObjectStore::Bury(REALobjectStruct* object) {
    if (watch_.DropLocks(object) != 0) watch_.Fault("let " + Describe(object) + " be destroyed while it was locked");
    live_.erase(object);
    if (dead_.size() == kMostDead) FreeOldestDead();
    dead_.push_back(
        {object, text::WithArticle(object->type->info.name) + " that was destroyed in " + watch_.Culprit()});
    ForbidAccess(object, object->type->instanceSize);
}

void ObjectStore::FreeOldestDead() {
    std::free(dead_.front().memory);
    dead_.pop_front();
}

std::vector<REALobjectStruct*> ObjectStore::LiveBySerial() const {
    std::vector<REALobjectStruct*> objects(live_.begin(), live_.end());
    std::ranges::sort(objects, {}, &REALobjectStruct::serial);
    return objects;
}

std::vector<std::string> ObjectStore::DescribeLive() const {
    std::vector<std::string> sentences;
    for (REALobjectStruct* object : LiveBySerial()) {
        sentences.push_back(Describe(object) + " was never released by " +
                            (object->held > 0 ? "the program" : "a plug-in"));
    }
    return sentences;
}

void ObjectStore::DestroyAll() { Destroy(LiveBySerial()); }

void ObjectStore::DestroyAllOf(const std::string& plugin) {
    std::vector<REALobjectStruct*> objects = LiveBySerial();
    std::erase_if(objects, [&](REALobjectStruct* object) {
        return !object->type->FindUpwards([&](const Class& type) { return type.info.plugin == plugin; });
    });
    Destroy(objects);
}

void ObjectStore::Destroy(const std::vector<REALobjectStruct*>& objects) {
    // Destructors may follow references to each other, so memory is kept until all have run.
    for (REALobjectStruct* object : objects) {
        if (IsLive(object) && !object->finished) RunDestructors(object);
    }
    for (REALobjectStruct* object : objects) {
        if (IsLive(object)) Bury(object);
    }
}

}  // namespace ombrix::host
