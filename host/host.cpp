#include "ombrix/host.h"

#include <limits>
#include <type_traits>
#include <utility>

#include "host/calls.h"
#include "host/installed_plugins.h"
#include "host/own_classes.h"
#include "text/names.h"
#include "text/numbers.h"
#include "text/phrases.h"
#include "text/suggestions.h"

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
    throw Error("there is no class " + text::Quoted(name) + text::Suggestion(name, NamesOf(host.registry.Classes())));
}

const Module& RequireModule(const HostState& host, std::string_view name) {
    if (const Module* module = host.registry.FindModule(name)) return *module;
    throw Error("there is no module " + text::Quoted(name) + text::Suggestion(name, NamesOf(host.registry.Modules())));
}

/// Of a class or a module.
std::vector<const Method*> MethodsNamed(const HostState& host, std::string_view classOrModule, std::string_view name) {
    if (const Module* module = host.registry.FindModule(classOrModule)) return MethodsNamed(*module, name);
    return MethodsNamed(RequireClass(host, classOrModule), name);
}

/// An Error when they are no pixels that can be wrapped.
PixelView ViewOf(const PixelRows& pixels) {
    std::string objection = PixelBuffer::Objection(pixels.width, pixels.height, pixels.depth);
    const PixelView view{static_cast<std::uint8_t*>(pixels.base), pixels.rowBytes, pixels.width, pixels.height,
                         pixels.depth};
    if (objection.empty() && pixels.height > 1 && pixels.rowBytes < static_cast<std::ptrdiff_t>(view.UsedRowBytes())) {
        objection = "rows of " + text::Size(pixels.width, pixels.height) + " pixels of " +
                    std::to_string(pixels.depth) + " bits overlap, " + std::to_string(pixels.rowBytes) + " bytes apart";
    }
    if (objection.empty() && pixels.rowBytes > std::numeric_limits<std::int32_t>::max()) {
        objection = "rows " + std::to_string(pixels.rowBytes) + " bytes apart are more than a plug-in can address";
    }
    if (!objection.empty()) throw Error("pixels cannot be wrapped: " + objection);
    return view;
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

Host::Turn::Turn(Host& host) : host_(*host.state_), before_(host_.watch.BeginTurn()) {}
Host::Turn::~Turn() { host_.watch.EndTurn(before_); }

Host::ResultPlace::ResultPlace(Host& host, const PixelRows& pixels) : host_(host.state_->ForProgram()) {
    if (host_.resultPlace || host_.resultPicture != nullptr) throw Error("there is a place for a result already");
    host_.resultPlace = ViewOf(pixels);
}

Host::ResultPlace::~ResultPlace() {
    host_.resultPlace.reset();
    REALobjectStruct* picture = std::exchange(host_.resultPicture, nullptr);
    if (picture == nullptr) return;
    PictureOf(picture).DropPixels(host_);
    host_.objects.LetGo(picture);
}

bool Host::ResultPlace::Holds(const Picture& picture) const {
    return picture && picture.Handle() == host_.resultPicture;
}

Host::Host(HostOptions options) : state_(std::make_unique<HostState>(std::move(options))) {}
Host::~Host() = default;

void Host::Load(const std::filesystem::path& plugin) { state_->ForProgram().Load(plugin); }

std::vector<BrokenPlugin> Host::LoadInstalled() {
    HostState& host = state_->ForProgram();
    const auto load = [&host](const std::filesystem::path& plugin) {
        if (!host.HasLoaded(plugin)) host.Load(plugin);
    };
    load(StandardPlugin());
    std::vector<BrokenPlugin> broken;
    for (const std::filesystem::path& plugin : InstalledPlugins(broken)) {
        try {
            load(plugin);
        } catch (const Error& error) {
            broken.push_back({plugin, error.what()});
        }
    }
    return broken;
}

Object Host::New(std::string_view className) {
    HostState& host = state_->ForProgram();
    return NewOf(host, RequireClass(host, className));
}

Picture Host::NewPicture(std::int64_t width, std::int64_t height, std::int64_t depth) {
    HostState& host = state_->ForProgram();
    const std::string objection = PixelBuffer::Objection(width, height, depth);
    if (!objection.empty()) throw Error("a picture cannot be made: " + objection);
    Picture picture(New(kPictureClass));
    if (!PictureOf(picture.Handle()).MakeBitmap(host, width, height, depth, Content::Zeros)) {
        throw Error("there is no memory for a picture of " + text::Size(width, height) + " pixels of " +
                    std::to_string(depth) + " bits");
    }
    return picture;
}

Picture Host::WrapPixels(const PixelRows& pixels) {
    HostState& host = state_->ForProgram();
    const PixelView view = ViewOf(pixels);
    Picture picture(New(kPictureClass));
    if (!PictureOf(picture.Handle()).Wrap(host, view)) throw Error("there is no memory for a picture");
    return picture;
}

Picture Host::NewDrawing(std::int64_t width, std::int64_t height) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    if (width < 0 || height < 0 || width > kMost || height > kMost) {
        throw Error("a drawing cannot be made: there is no size of " + text::Size(width, height));
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
    HostState& host = state_->ForProgram();
    return CallNamed(host, nullptr, RequireModule(host, module), method, arguments);
}

Value Host::CallModule(std::string_view module, const MethodInfo& method, const std::vector<Argument>& arguments) {
    HostState& host = state_->ForProgram();
    return CallDeclared(host, nullptr, RequireModule(host, module), ReadMethod(method.declaration), arguments);
}

std::vector<ClassInfo> Host::Classes() const { return InfosOf(state_->ForProgram().registry.Classes()); }
std::vector<ModuleInfo> Host::Modules() const { return InfosOf(state_->ForProgram().registry.Modules()); }

const ClassInfo* Host::FindClass(std::string_view name) const {
    const Class* found = state_->ForProgram().registry.FindClass(name);
    return found == nullptr ? nullptr : &found->info;
}

const ModuleInfo* Host::FindModule(std::string_view name) const {
    const Module* found = state_->ForProgram().registry.FindModule(name);
    return found == nullptr ? nullptr : &found->info;
}

std::vector<const ClassInfo*> Host::Ancestry(std::string_view className) const {
    std::vector<const ClassInfo*> ancestry;
    RequireClass(state_->ForProgram(), className).FindUpwards([&](const Class& type) {
        ancestry.push_back(&type.info);
        return false;
    });
    return ancestry;
}

bool Host::IsA(std::string_view className, std::string_view classOrInterface) const {
    return Distance(RequireClass(state_->ForProgram(), className), classOrInterface) >= 0;
}

const PropertyInfo* Host::FindProperty(std::string_view className, std::string_view property) const {
    for (const ClassInfo* type : Ancestry(className)) {
        for (const PropertyInfo& each : type->properties) {
            if (text::SameName(each.name, property)) return &each;
        }
    }
    return nullptr;
}

std::vector<MethodInfo> Host::FindMethods(std::string_view classOrModule, std::string_view method) const {
    std::vector<MethodInfo> infos;
    for (const Method* each : MethodsNamed(state_->ForProgram(), classOrModule, method)) infos.push_back(each->Info());
    return infos;
}

std::optional<MethodInfo> Host::ChooseMethod(std::string_view classOrModule, std::string_view method,
                                             const std::vector<std::string>& arguments) const {
    const std::string callee = std::string(classOrModule) + "." + std::string(method);
    const Method* chosen = ChooseByNames(callee, MethodsNamed(state_->ForProgram(), classOrModule, method), arguments);
    return chosen == nullptr ? std::nullopt : std::optional(chosen->Info());
}

std::int64_t Host::LiveObjects() const { return state_->ForProgram().objects.LiveCount(); }
std::int64_t Host::OutstandingLocks() const { return state_->ForProgram().watch.LockCount(); }
const std::vector<std::string>& Host::Faults() const { return state_->ForProgram().watch.Faults(); }

}  // namespace ombrix::host
