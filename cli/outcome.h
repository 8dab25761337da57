// What an effect says about its last call, in words.
#pragma once

#include <string>
#include <vector>

#include "cli/effect_object.h"
#include "cli/session.h"

namespace ombrix::cli {

/// One call on an object, for telling how it went.
struct CallRecord {
    const host::ClassInfo& type;
    const host::Object& object;
    host::Picture source;                         ///< the picture that it worked on; may be nil
    const std::vector<PlannedSetting>& settings;  ///< properties and arguments that were given
    const std::vector<GivenPicture>& pictures;    ///< those of the settings that are pictures
    bool byProperties = true;                     ///< the call goes by the object's properties, not by arguments
};

/// A WorkError when the object's error code says that its last call failed: what failed, the code's name in the
/// registered constants, what was given and, where it can be found out, what would have worked.
void CheckErrorCode(Session& session, const CallRecord& call);

}  // namespace ombrix::cli
