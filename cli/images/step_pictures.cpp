#include "cli/images/step_pictures.h"

#include <algorithm>

#include "cli/supervisor/progress_of_work.h"
#include "ombrix/catalogue.h"
#include "text/names.h"

namespace ombrix::cli {

using vips::VImage;

namespace {

constexpr double kOpaque = 255;

VImage Cropped(const VImage& image, int width, int height) {
    return image.width() == width && image.height() == height ? image : image.extract_area(0, 0, width, height);
}

/// How much of a picture shows: 0 to 255. `mask`: as it is given, of which red counts.
VImage Visible(const VImage& alpha, const OpenedImage* mask, bool whiteHides) {
    if (mask == nullptr) return alpha;
    // A mask that is too small for the picture stays so: it is the effect that objects.
    const int width = std::min(alpha.width(), mask->image.width());
    const int height = std::min(alpha.height(), mask->image.height());
    const VImage red = Cropped(mask->image, width, height)[0];
    const VImage shown = whiteHides ? red.invert() : red;
    return (Cropped(alpha, width, height) * shown / kOpaque).rint().cast(VIPS_FORMAT_UCHAR);
}

VImage MaskOf(const VImage& visible, bool whiteHides) {
    const VImage grey = whiteHides ? visible.invert() : visible;
    return VImage::bandjoin({grey, grey, grey}).copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

void ShowShape(Session& session, const host::ClassInfo& type, std::size_t index, std::vector<StepPicture>& pictures) {
    const StepPicture picture = pictures[index];
    const auto mask = [&] {
        const Doing trying(Activity::Effect, type.name);
        const catalogue::Effect& effect = session.catalogue.Named(type.name);
        return effect.ShapeMaskOf(effect.PropertyNamed(picture.property));
    }();
    if (!mask) {
        session.console.Note(picture.image.file.string() + " is transparent in parts, which " + picture.property +
                             " does not look at: only its red, green and blue count");
        return;
    }
    const auto given = std::ranges::find_if(
        pictures, [&mask](const StepPicture& other) { return text::SameName(other.property, mask->property); });
    const bool isGiven = given != pictures.end();
    StepPicture shape = isGiven ? *given : picture;
    shape.property = shape.setting.name = mask->property;
    shape.image.image =
        MaskOf(Visible(picture.image.image[3], isGiven ? &given->image : nullptr, mask->whiteHides), mask->whiteHides);
    if (isGiven) {
        *given = shape;
    } else {
        pictures.push_back(shape);
    }
}

}  // namespace

std::vector<StepPicture> OpenStepPictures(Session& session, const host::ClassInfo& type,
                                          const std::vector<PlannedSetting>& properties) {
    std::vector<StepPicture> pictures;
    for (const PlannedSetting& setting : properties) {
        if (!setting.File()) continue;
        pictures.push_back({setting.name, setting, OpenImage(session, *setting.File())});
    }
    // Masks that are made are put behind.
    const std::size_t given = pictures.size();
    for (std::size_t i = 0; i < given; ++i) {
        if (pictures[i].image.origin.hasAlpha && IsTransparent(pictures[i].image.file)) {
            ShowShape(session, type, i, pictures);
        }
    }
    return pictures;
}

}  // namespace ombrix::cli
