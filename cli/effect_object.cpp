#include "cli/effect_object.h"

#include "cli/failure.h"
#include "cli/reflection.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

/// 0: the effect chooses; -1: all.
constexpr std::string_view kCoresProperty = "MultiprocessingHint";

PlannedSetting PlanProperty(Session& session, const host::ClassInfo& type, const Setting& setting) {
    const host::PropertyInfo* property = session.host.FindProperty(type.name, setting.name);
    if (!property) {
        throw UsageError(type.name + " has no property " + setting.name + "; it has " +
                         text::Listed(SettableProperties(session.host, type)));
    }
    const std::string name = type.name + "." + property->name;
    if (property->readOnly) throw UsageError(name + " can be read only, not set");
    return {setting, property->name,
            ParseValue(session.host, setting, property->type, session.catalogue.ConstantsFor(type, *property), name)};
}

}  // namespace

const std::filesystem::path* PlannedSetting::File() const {
    const auto* file = std::get_if<ImageFile>(&value);
    return file ? &file->path : nullptr;
}

host::Value ValueOf(Session& session, const PlannedSetting& setting, std::vector<GivenPicture>& pictures) {
    const std::filesystem::path* file = setting.File();
    if (!file) return std::get<host::Value>(setting.value);
    pictures.push_back({setting, ReadImage(session, *file)});
    return host::Value(host::Object(pictures.back().read.picture));
}

std::vector<PlannedSetting> PlanProperties(Session& session, const host::ClassInfo& type,
                                           const std::vector<Setting>& settings) {
    RefuseTwice(settings);
    std::vector<PlannedSetting> planned;
    for (const Setting& setting : settings) planned.push_back(PlanProperty(session, type, setting));
    return planned;
}

void SetCores(const Session& session, const host::ClassInfo& type, const host::Object& object) {
    if (session.options.cores && session.host.FindProperty(type.name, kCoresProperty)) {
        object.Set(kCoresProperty, *session.options.cores);
    }
}

void SetValues(const std::vector<PlannedSetting>& properties, const host::Object& object) {
    for (const PlannedSetting& setting : properties) {
        if (!setting.File()) object.Set(setting.name, std::get<host::Value>(setting.value));
    }
}

void SetProgressHandler(Session& session, const host::ClassInfo& type, const host::Object& object) {
    if (!session.console.ShowsProgress()) return;
    if (const host::PropertyInfo* property = FindProgressProperty(session.host, type)) {
        object.Set(property->name, session.host.NewProgressHandler([&console = session.console](auto done, auto total) {
            console.Report(done, total);
        }));
    }
}

host::Object MakeObject(Session& session, const host::ClassInfo& type, const std::vector<PlannedSetting>& properties,
                        std::vector<GivenPicture>& pictures) {
    const host::Object object = session.host.New(type.name);
    SetCores(session, type, object);
    for (const PlannedSetting& property : properties) object.Set(property.name, ValueOf(session, property, pictures));
    SetProgressHandler(session, type, object);
    session.console.BeginStage(type.name);
    return object;
}

}  // namespace ombrix::cli
