// Which pictures the gallery shows of an effect. Worked out from what the effect has registered and from what it does
// when it is tried; no effect is known here.
#pragma once

#include <string>
#include <vector>

#include "cli/gallery_look.h"
#include "cli/gallery_scene.h"
#include "cli/session.h"

namespace ombrix::cli {

/// One picture of the gallery.
struct Shot {
    std::vector<SceneSetting> settings;
    std::string impression;  ///< what it looks like, compared with the original: "darker, with more contrast"
};

/// What is known of a property.
struct PropertyFact {
    std::string name;
    std::string type;
    std::string remark;  ///< "-100 to 100", "24 constants", "needed"; may be empty
};

struct EffectPlan {
    const host::ClassInfo* type;
    std::vector<PropertyFact> facts;
    std::vector<Shot> shots;  ///< none when the effect gave no picture, whatever was tried
};

/// Plans the shots of one effect by trying it on a small scene.
EffectPlan PlanShots(Session& session, const host::ClassInfo& type, const Scene& small);

}  // namespace ombrix::cli
