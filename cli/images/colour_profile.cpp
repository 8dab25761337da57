#include "cli/images/colour_profile.h"

#include <lcms2.h>

#include <array>
#include <memory>

namespace ombrix::cli {

namespace {

struct Close {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, Close>;

/// libvips' numbers of intents are those of profiles.
constexpr std::array kIntents = {VIPS_INTENT_RELATIVE, VIPS_INTENT_PERCEPTUAL, VIPS_INTENT_SATURATION,
                                 VIPS_INTENT_ABSOLUTE};

std::string NameOf(cmsHPROFILE profile) {
    std::array<char, 80> name{};
    cmsGetProfileInfoASCII(profile, cmsInfoDescription, "en", "US", name.data(), name.size() - 1);
    return name.data();
}

/// Whether the profile is for the image's channels, alpha aside.
bool IsFor(cmsHPROFILE profile, const vips::VImage& image) {
    const int bands = image.bands() - (image.has_alpha() ? 1 : 0);
    switch (cmsGetColorSpace(profile)) {
        case cmsSigGrayData:
            return bands == 1;
        case cmsSigRgbData:
            return bands >= 3 && image.interpretation() != VIPS_INTERPRETATION_CMYK;
        case cmsSigCmykData:
            return bands >= 4 && image.interpretation() == VIPS_INTERPRETATION_CMYK;
        default:
            return false;
    }
}

}  // namespace

std::optional<ColourProfile> ProfileOf(const vips::VImage& image) {
    if (image.get_typeof(VIPS_META_ICC_NAME) == 0) return std::nullopt;
    std::size_t size = 0;
    const void* bytes = image.get_blob(VIPS_META_ICC_NAME, &size);
    const Profile profile(cmsOpenProfileFromMem(bytes, static_cast<cmsUInt32Number>(size)));
    ColourProfile found;
    if (!profile) return found;
    found.name = NameOf(profile.get());
    if (!IsFor(profile.get(), image)) return found;
    for (const VipsIntent intent : kIntents) {
        if (cmsIsIntentSupported(profile.get(), static_cast<cmsUInt32Number>(intent), LCMS_USED_AS_INPUT) == 0)
            continue;
        found.intent = intent;
        break;
    }
    return found;
}

}  // namespace ombrix::cli
