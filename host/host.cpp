#include "host/host.h"

#include <limits>
#include <type_traits>

#include "host/calls.h"
#include "host/own_classes.h"
#include "host/text.h"

namespace ombrix::host {
namespace {

template <class Items>
auto InfosOf(const Items& items) {
    std::vector<std::decay_t<decltype(items.front()->info)>> infos;
    for (const auto& item : items) infos.push_back(item->info);
    return infos;
}

template <class Items>
std::vector<std::string> NamesOf(const Items& items) {
    std::vector<std::string> names;
    for (const auto& item : items) names.push_back(item->info.name);
    return names;
}

const Class& RequireClass(const HostState& host, std::string_view name) {
    if (const Class* type = host.registry.FindClass(name)) return *type;
    throw Error("there is no class " + Quoted(name) + Suggestion(name, NamesOf(host.registry.Classes())));
}

Object NewOf(HostState& host, const Class& type) {
    Watch::Call call(host.watch, "a new " + type.info.name);
    REALobjectStruct* handle = host.objects.Create(type);
    if (handle == nullptr) throw Error("there is no memory for a new " + type.info.name);
    Object object = Object::Adopt(handle);
    call.Finish();
    return object;
}

}  // namespace

// Every function asks for the current host, which is this one, since that makes sure of the thread.

Host::Host(HostOptions options) : state_(std::make_unique<HostState>(std::move(options))) {}
Host::~Host() = default;

void Host::Load(const std::filesystem::path& plugin) { HostState::Required().Load(plugin); }

Object Host::New(std::string_view className) {
    HostState& host = HostState::Required();
    return NewOf(host, RequireClass(host, className));
}

Picture Host::NewPicture(std::int64_t width, std::int64_t height, std::int64_t depth) {
    HostState& host = HostState::Required();
    const std::string objection = PixelBuffer::Objection(width, height, depth);
    if (!objection.empty()) throw Error("a picture cannot be made: " + objection);
    Picture picture(New(kPictureClass));
    if (!PictureOf(picture.Handle()).MakeBitmap(host, width, height, depth, Content::Zeros)) {
        throw Error("there is no memory for a picture of " + std::to_string(width) + " x " + std::to_string(height) +
                    " pixels of " + std::to_string(depth) + " bits");
    }
    return picture;
}

Picture Host::NewDrawing(std::int64_t width, std::int64_t height) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    if (width < 0 || height < 0 || width > kMost || height > kMost) {
        throw Error("a drawing cannot be made: there is no size of " + std::to_string(width) + " x " +
                    std::to_string(height));
    }
    Picture picture(New(kPictureClass));
    PictureData& data = PictureOf(picture.Handle());
    data.isDrawing = true;
    data.width = width;
    data.height = height;
    return picture;
}

Point Host::NewPoint(std::int64_t x, std::int64_t y) {
    Point point(New(kPointClass));
    PointOf(point.Handle()) = {x, y};
    return point;
}

Object Host::NewProgressHandler(std::function<void(std::int64_t, std::int64_t)> report) {
    Object handler = New(kProgressHandlerClass);
    ProgressHandlerOf(handler.Handle()).report = std::move(report);
    return handler;
}

Value Host::CallModule(std::string_view module, std::string_view method, const std::vector<Argument>& arguments) {
    HostState& host = HostState::Required();
    const Module* found = host.registry.FindModule(module);
    if (found == nullptr)
        throw Error("there is no module " + Quoted(module) + Suggestion(module, NamesOf(host.registry.Modules())));
    std::vector<const Method*> candidates;
    std::vector<std::string> names;
    for (const Method& each : found->methods) {
        names.push_back(each.declaration.name);
        if (SameName(each.declaration.name, method)) candidates.push_back(&each);
    }
    if (candidates.empty())
        throw Error(found->info.name + " has no method " + Quoted(method) + Suggestion(method, names));
    const std::string name = found->info.name + "." + candidates.front()->declaration.name;
    return CallMethod(host, name, nullptr, ChooseOverload(name, candidates, arguments));
}

std::vector<ClassInfo> Host::Classes() const { return InfosOf(HostState::Required().registry.Classes()); }
std::vector<ModuleInfo> Host::Modules() const { return InfosOf(HostState::Required().registry.Modules()); }

const ClassInfo* Host::FindClass(std::string_view name) const {
    const Class* found = HostState::Required().registry.FindClass(name);
    return found == nullptr ? nullptr : &found->info;
}

const ModuleInfo* Host::FindModule(std::string_view name) const {
    const Module* found = HostState::Required().registry.FindModule(name);
    return found == nullptr ? nullptr : &found->info;
}

std::vector<const ClassInfo*> Host::Ancestry(std::string_view className) const {
    std::vector<const ClassInfo*> ancestry;
    RequireClass(HostState::Required(), className).FindUpwards([&](const Class& type) {
        ancestry.push_back(&type.info);
        return false;
    });
    return ancestry;
}

std::int64_t Host::LiveObjects() const { return HostState::Required().objects.LiveCount(); }
std::int64_t Host::OutstandingLocks() const { return HostState::Required().watch.LockCount(); }
const std::vector<std::string>& Host::Faults() const { return HostState::Required().watch.Faults(); }

}  // namespace ombrix::host
