#include "bridges/vips/images.h"

namespace ombrix::bridge {

using vips::VImage;

namespace {

/// What the bands mean. A guess where the image does not say it usefully.
VipsInterpretation Meaning(const VImage& image) {
    const VipsInterpretation said = image.guess_interpretation();
    if (said != VIPS_INTERPRETATION_MULTIBAND && said != VIPS_INTERPRETATION_HISTOGRAM &&
        said != VIPS_INTERPRETATION_MATRIX && said != VIPS_INTERPRETATION_FOURIER && said != VIPS_INTERPRETATION_ERROR)
        return said;
    const bool isGrey = image.bands() < 3;
    if (image.format() == VIPS_FORMAT_USHORT) return isGrey ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_RGB16;
    return isGrey ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB;
}

ombrix_rows Rows(void* base, std::size_t rowBytes, int width, int height, int bands) {
    const bool hasAlpha = bands == 4;
    return {sizeof(ombrix_rows),
            base,
            static_cast<std::ptrdiff_t>(rowBytes),
            width,
            height,
            hasAlpha ? OMBRIX_RGBA : OMBRIX_RGB,
            hasAlpha ? OMBRIX_ALPHA_STRAIGHT : OMBRIX_ALPHA_NONE};
}

}  // namespace

VImage InColours(VImage image) {
    if (image.coding() == VIPS_CODING_RAD) image = image.rad2float();
    if (image.coding() == VIPS_CODING_NONE) image = image.copy(VImage::option()->set("interpretation", Meaning(image)));
    if (image.interpretation() != VIPS_INTERPRETATION_sRGB) image = image.colourspace(VIPS_INTERPRETATION_sRGB);
    return image.format() == VIPS_FORMAT_UCHAR ? image : image.cast(VIPS_FORMAT_UCHAR);
}

VImage Colours(const VImage& image) {
    return image.bands() > 3 ? image.extract_band(0, VImage::option()->set("n", 3)) : image;
}

ombrix_rows RowsOf(VipsRegion* region, const VipsRect& area) {
    return Rows(VIPS_REGION_ADDR(region, area.left, area.top), VIPS_REGION_LSKIP(region), area.width, area.height,
                region->im->Bands);
}

ombrix_rows RowsOf(const VImage& image) {
    return Rows(const_cast<void*>(image.data()), VIPS_IMAGE_SIZEOF_LINE(image.get_image()), image.width(),
                image.height(), image.bands());
}

}  // namespace ombrix::bridge
