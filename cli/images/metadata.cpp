#include "cli/images/metadata.h"

#include <string_view>

namespace ombrix::cli {

using vips::VImage;

namespace {

constexpr int kUpright = 1;

bool IsCarried(std::string_view field) {
    return field.starts_with("exif-") || field == VIPS_META_XMP_NAME || field == VIPS_META_IPTC_NAME ||
           field == VIPS_META_RESOLUTION_UNIT;
}

}  // namespace

VImage MetadataOf(const VImage& upright) { return WithMetadata(VImage::black(1, 1), upright); }

VImage WithMetadata(const VImage& image, const VImage& metadata) {
    VImage result = image.copy(VImage::option()->set("xres", metadata.xres())->set("yres", metadata.yres()));
    gchar** fields = vips_image_get_fields(metadata.get_image());
    for (gchar** field = fields; *field != nullptr; ++field) {
        GValue value = G_VALUE_INIT;
        if (IsCarried(*field) && vips_image_get(metadata.get_image(), *field, &value) == 0) {
            vips_image_set(result.get_image(), *field, &value);
            g_value_unset(&value);
        }
    }
    g_strfreev(fields);
    // The raw EXIF still has the old orientation; this value replaces it.
    result.set(VIPS_META_ORIENTATION, kUpright);
    return result;
}

}  // namespace ombrix::cli
