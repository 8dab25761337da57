// Objects of registered classes, set up from the command line.
#pragma once

#include <string>
#include <vector>

#include "cli/image_reader.h"
#include "cli/session.h"
#include "cli/values.h"

namespace ombrix::cli {

/// A setting of the command line whose name and type have been checked.
struct PlannedSetting {
    Setting given;
    std::string name;  ///< as registered
    TypedValue value;

    /// The image file that it names; null when it is something else.
    const std::filesystem::path* File() const;
};

/// A picture that was read for a setting.
struct GivenPicture {
    PlannedSetting setting;
    ReadPicture read;
};

/// The value of a planned setting. Reads the image file that it names, and then adds the picture to `pictures`.
host::Value ValueOf(Session& session, const PlannedSetting& setting, std::vector<GivenPicture>& pictures);

/// Checks the settings against the properties of the class. A UsageError names the property and what would work.
std::vector<PlannedSetting> PlanProperties(Session& session, const host::ClassInfo& type,
                                           const std::vector<Setting>& settings);

/// A UsageError when two of the settings have the same name.
void RefuseTwice(const std::vector<Setting>& settings);

/// Lets the object, of the class given, use as many cores as the options say.
void SetCores(const Session& session, const host::ClassInfo& type, const host::Object& object);

/// A new object of the class with its properties set: the cores that it may use, a handler for the progress line, and
/// what was planned. Pictures that are read on the way are added to `pictures`.
host::Object MakeObject(Session& session, const host::ClassInfo& type, const std::vector<PlannedSetting>& properties,
                        std::vector<GivenPicture>& pictures);

}  // namespace ombrix::cli
