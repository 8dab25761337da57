// Tells why an effect failed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/effect_object.h"
#include "cli/session.h"

namespace ombrix::cli {

/// The constant of an ErrorCode, such as "INVALID_MASK"; "error 9" when there is none.
std::string ErrorName(const host::Host& host, std::int64_t code);

/// Why a mask cannot be used on a picture, in a sentence that names its file; empty when it is large enough.
std::string ObjectionToMask(const std::string& file, std::int64_t maskWidth, std::int64_t maskHeight,
                            std::int64_t width, std::int64_t height);

/// A call on an object.
struct CallRecord {
    const host::ClassInfo& type;
    const host::Object& object;
    host::Picture source;  ///< nil when it was given none
    const std::vector<PlannedSetting>& settings;
    const std::vector<GivenPicture>& pictures;  ///< of the settings
    bool byProperties = true;                   ///< false when arguments replace the properties
};

/// A WorkError when the object's ErrorCode is not 0. It names the code and what was given. CheckValues has
/// found wrong values before.
void CheckErrorCode(Session& session, const CallRecord& call);

}  // namespace ombrix::cli
