// Objects set up from the command line.
#pragma once

#include <string>
#include <vector>

#include "cli/images/image_reader.h"
#include "cli/session.h"
#include "cli/settings.h"
#include "cli/values.h"

namespace ombrix::cli {

/// A setting, its name and type checked.
struct PlannedSetting {
    Setting given;
    std::string name;  ///< as registered
    TypedValue value;

    /// The image file that it names, or null.
    const std::filesystem::path* File() const;
};

/// A picture read for a setting.
struct GivenPicture {
    PlannedSetting setting;
    ReadPicture read;
};

/// The setting's value. An image file is read and added to `pictures`.
host::Value ValueOf(Session& session, const PlannedSetting& setting, std::vector<GivenPicture>& pictures);

/// Checks settings against the properties of a class. A UsageError says what would work.
std::vector<PlannedSetting> PlanProperties(Session& session, const host::ClassInfo& type,
                                           const std::vector<Setting>& settings);

/// `type` is the object's class.
void SetCores(const Session& session, const host::ClassInfo& type, const host::Object& object);

/// Sets all properties that need no file.
void SetValues(const std::vector<PlannedSetting>& properties, const host::Object& object);

/// Only for a progress line that shows: an effect with a handler may work in smaller bands.
void SetProgressHandler(Session& session, const host::ClassInfo& type, const host::Object& object);

/// A new object with the planned properties, the options' cores, and a handler for the progress line. Image files are
/// read and added to `pictures`.
host::Object MakeObject(Session& session, const host::ClassInfo& type, const std::vector<PlannedSetting>& properties,
                        std::vector<GivenPicture>& pictures);

}  // namespace ombrix::cli
