#include "cli/images/colour.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace ombrix::cli {

using vips::VImage;

namespace {

/// libvips' packed forms as plain bands.
VImage Unpacked(const VImage& image) {
    switch (image.coding()) {
        case VIPS_CODING_RAD:
            return image.rad2float();
        case VIPS_CODING_LABQ:
            return image.LabQ2Lab();
        default:
            return image;
    }
}

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

VImage Transformed(const VImage& image) {
    return image.icc_transform("srgb", VImage::option()
                                           ->set("embedded", true)
                                           ->set("intent", VIPS_INTENT_RELATIVE)
                                           ->set("black_point_compensation", true)
                                           ->set("depth", 8));
}

/// Whether the embedded profile is practically sRGB, as in most photos: converting these would only round them. Tries
/// colours from all over the cube.
bool IsPracticallySrgb(const VImage& image) {
    if (image.bands() < 3 || image.interpretation() != VIPS_INTERPRETATION_sRGB) return false;
    constexpr int kSteps = 16;
    std::vector<std::uint8_t> colours;
    for (int red = 0; red < kSteps; ++red) {
        for (int green = 0; green < kSteps; ++green) {
            for (int blue = 0; blue < kSteps; ++blue) {
                for (const int level : {red, green, blue}) colours.push_back(static_cast<std::uint8_t>(level * 17));
            }
        }
    }
    VImage probe =
        VImage::new_from_memory(colours.data(), colours.size(), kSteps * kSteps, kSteps, 3, VIPS_FORMAT_UCHAR)
            .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    std::size_t size = 0;
    const void* profile = image.get_blob(VIPS_META_ICC_NAME, &size);
    vips_image_set_blob_copy(probe.get_image(), VIPS_META_ICC_NAME, profile, size);
    return (Transformed(probe) - probe).abs().max() <= 1;
}

VImage FollowProfile(const VImage& image) {
    const bool eightBits = image.format() == VIPS_FORMAT_UCHAR;
    return eightBits && IsPracticallySrgb(image) ? image : Transformed(image);
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

VImage ToSrgb(VImage image, const std::filesystem::path& file, Console& console) {
    image = Unpacked(image);
    if (image.format() == VIPS_FORMAT_UINT) {
        image = image.cast(VIPS_FORMAT_USHORT, VImage::option()->set("shift", true));
    }
    image = image.copy(VImage::option()->set("interpretation", Meaning(image)));
    bool converted = false;
    if (image.get_typeof(VIPS_META_ICC_NAME) != 0) {
        try {
            image = FollowProfile(image);
            converted = true;
        } catch (const vips::VError&) {
            vips_error_clear();
            console.Note("the colour profile of " + file.string() + " cannot be used and is left aside");
        }
    }
    if (!converted || image.interpretation() != VIPS_INTERPRETATION_sRGB) {
        image = image.colourspace(VIPS_INTERPRETATION_sRGB);
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
