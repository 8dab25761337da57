// Chooses the pictures of an effect, from what is registered and by trying.
#pragma once

#include <string>
#include <vector>

#include "cli/gallery/look.h"
#include "cli/gallery/scene.h"
#include "cli/session.h"

namespace ombrix::cli {

/// One picture of the gallery.
struct Shot {
    std::vector<SceneSetting> settings;
    std::string impression;  ///< compared with the original: "darker, with more contrast"
};

struct PropertyFact {
    std::string name;
    std::string type;
    std::string remark;  ///< "-100 to 100", "needed"; may be empty
};

struct EffectPlan {
    const host::ClassInfo* type;
    std::vector<PropertyFact> facts;
    std::vector<Shot> shots;  ///< none when the effect gave no picture
};

/// Tries the effect on a small scene.
EffectPlan PlanShots(Session& session, const catalogue::Effect& effect, const Scene& small);

}  // namespace ombrix::cli
