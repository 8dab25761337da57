#include "cli/images/colour.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "cli/failure.h"
#include "cli/images/colour_profile.h"
#include "cli/images/image_reader.h"
#include "text/phrases.h"

namespace ombrix::cli {

using vips::VImage;

namespace {

/// What the bands mean. A guess where the file does not say it usefully.
VipsInterpretation Meaning(const VImage& image) {
    const VipsInterpretation said = image.guess_interpretation();
    const bool convertible = said != VIPS_INTERPRETATION_MULTIBAND && said != VIPS_INTERPRETATION_HISTOGRAM &&
                             said != VIPS_INTERPRETATION_MATRIX && said != VIPS_INTERPRETATION_FOURIER &&
                             said != VIPS_INTERPRETATION_ERROR;
    if (convertible) return said;
    const bool grey = image.bands() < 3;
    if (image.format() == VIPS_FORMAT_USHORT) return grey ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_RGB16;
    return grey ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB;
}

/// Whether the channels are those of a device, which a profile describes.
bool IsOfDevice(VipsInterpretation meaning) {
    switch (meaning) {
        case VIPS_INTERPRETATION_sRGB:
        case VIPS_INTERPRETATION_RGB:
        case VIPS_INTERPRETATION_RGB16:
        case VIPS_INTERPRETATION_B_W:
        case VIPS_INTERPRETATION_GREY16:
        case VIPS_INTERPRETATION_CMYK:
            return true;
        default:
            return false;
    }
}

/// Transforms by the embedded profile.
VImage Transformed(const VImage& image, VipsIntent intent) {
    return image.icc_transform("srgb", VImage::option()
                                           ->set("embedded", true)
                                           ->set("intent", intent)
                                           ->set("black_point_compensation", intent == VIPS_INTENT_RELATIVE)
                                           ->set("depth", 8));
}

/// Whether the embedded profile is practically sRGB, as in most photos: converting these would only round them. Tries
/// greys, and colours from all over the cube.
bool IsPracticallySrgb(const VImage& image, VipsIntent intent) {
    if (image.interpretation() == VIPS_INTERPRETATION_CMYK) return false;
    constexpr int kSteps = 16, kStep = 17, kColours = kSteps * kSteps * kSteps;
    std::vector<std::uint8_t> colours;
    for (int i = 0; i < kColours; ++i) {
        for (const int level : {i / kSteps / kSteps, i / kSteps % kSteps, i % kSteps}) {
            colours.push_back(static_cast<std::uint8_t>(level * kStep));
        }
    }
    const VImage cube = VImage::new_from_memory(colours.data(), colours.size(), kColours, 1, 3, VIPS_FORMAT_UCHAR);
    const bool isGrey = image.bands() < 3;
    VImage probe =
        (isGrey ? cube[0] : cube)
            .copy(VImage::option()->set("interpretation", isGrey ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB));
    std::size_t size = 0;
    const void* profile = image.get_blob(VIPS_META_ICC_NAME, &size);
    vips_image_set_blob_copy(probe.get_image(), VIPS_META_ICC_NAME, profile, size);
    return (Transformed(probe, intent) - probe).abs().max() <= 1;
}

VImage FollowProfile(const VImage& image, VipsIntent intent, bool isSrgb) {
    // Other formats are taken for 8 bits.
    const bool isDeep = image.format() != VIPS_FORMAT_UCHAR && image.format() != VIPS_FORMAT_USHORT;
    const VImage levels = isDeep ? image.cast(VIPS_FORMAT_UCHAR) : image;
    if (levels.format() == VIPS_FORMAT_UCHAR) return isSrgb ? levels : Transformed(levels, intent);
    if (!levels.has_alpha()) return Transformed(levels, intent);
    // libvips leaves what is no colour at its depth.
    const int alpha = levels.bands() - 1;
    const VImage colours = Transformed(levels.extract_band(0, VImage::option()->set("n", alpha)), intent);
    return colours.bandjoin(levels[alpha].cast(VIPS_FORMAT_UCHAR, VImage::option()->set("shift", true)));
}

/// Frames and planes of instruments.
void RefusePlanes(const VImage& image, const std::filesystem::path& file) {
    const bool isFits = image.get_typeof(VIPS_META_LOADER) != 0 &&
                        std::string_view(image.get_string(VIPS_META_LOADER)).starts_with("fits");
    if (!isFits || image.bands() <= 3) return;
    throw WorkError(file.string() + " has " + std::to_string(image.bands()) +
                    " planes, which are no red, green and blue");
}

}  // namespace

std::string DepthAbove8Bits(const VImage& image) {
    if (image.coding() == VIPS_CODING_RAD) return "floating-point channels";
    switch (image.format()) {
        case VIPS_FORMAT_UCHAR:
        case VIPS_FORMAT_CHAR:
            return "";
        case VIPS_FORMAT_USHORT:
        case VIPS_FORMAT_SHORT:
            return "16 bits a channel";
        case VIPS_FORMAT_UINT:
        case VIPS_FORMAT_INT:
            return "32 bits a channel";
        default:
            return "floating-point channels";
    }
}

VImage ToSrgb(VImage image, const std::filesystem::path& file, Losses& losses) {
    RefusePlanes(image, file);
    if (image.coding() == VIPS_CODING_RAD) image = image.rad2float();
    if (image.coding() == VIPS_CODING_NONE) image = image.copy(VImage::option()->set("interpretation", Meaning(image)));
    bool converted = false;
    try {
        const bool isDevice = image.coding() == VIPS_CODING_NONE && IsOfDevice(image.interpretation());
        if (const auto profile = isDevice ? ProfileOf(image) : std::nullopt; profile && profile->intent) {
            const bool isSrgb = IsPracticallySrgb(image, *profile->intent);
            image = FollowProfile(image, *profile->intent, isSrgb);
            converted = true;
            const std::string name =
                "colour profile" + (profile->name.empty() ? "" : " " + text::Quoted(profile->name));
            if (!isSrgb) {
                losses.Add(file.string() + " has the " + name + "; its colours are converted to sRGB", "its " + name);
            }
        } else if (profile) {
            losses.Add("the colour profile of " + file.string() + " cannot be used and is left aside",
                       "its colour profile, which cannot be used");
        }
        if (!converted && image.interpretation() == VIPS_INTERPRETATION_CMYK) {
            losses.Add(file.string() + " has CMYK colours; they are converted to sRGB", "its CMYK colours");
        }
        if (image.interpretation() != VIPS_INTERPRETATION_sRGB) image = image.colourspace(VIPS_INTERPRETATION_sRGB);
    } catch (const vips::VError&) {
        throw WorkError("the colours of " + file.string() + " cannot be converted to sRGB: " + TakeLibraryMessage());
    }
    if (image.format() != VIPS_FORMAT_UCHAR) image = image.cast(VIPS_FORMAT_UCHAR);
    // libvips leaves grey as it is, and channels beyond alpha.
    if (image.bands() < 3) {
        const VImage grey = image[0];
        image =
            image.bands() == 2 ? VImage::bandjoin({grey, grey, grey, image[1]}) : VImage::bandjoin({grey, grey, grey});
    }
    return image.bands() > 4 ? image.extract_band(0, VImage::option()->set("n", 4)) : image;
}

}  // namespace ombrix::cli
