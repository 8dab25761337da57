#include "cli/images/metadata.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix::cli {

using vips::VImage;

namespace {

constexpr int kUpright = 1;

bool IsCarried(std::string_view field) {
    return field.starts_with("exif-") || field == VIPS_META_XMP_NAME || field == VIPS_META_IPTC_NAME ||
           field == VIPS_META_RESOLUTION_UNIT;
}

bool IsOfFrames(std::string_view field) {
    return field == VIPS_META_N_PAGES || field == VIPS_META_PAGE_HEIGHT || field == "delay" || field == "loop";
}

void ForEachField(const VImage& image, const std::function<void(const char*)>& process) {
    gchar** fields = vips_image_get_fields(image.get_image());
    for (gchar** field = fields; *field != nullptr; ++field) process(*field);
    g_strfreev(fields);
}

}  // namespace

VImage MetadataOf(const VImage& upright) { return WithMetadata(VImage::black(1, 1), upright); }

VImage WithoutMetadata(const VImage& image) {
    VImage result = image.copy();
    // Not while the fields are gone through.
    std::vector<std::string> removed;
    ForEachField(image, [&removed](const char* field) {
        if (!IsOfFrames(field)) removed.emplace_back(field);
    });
    for (const std::string& field : removed) vips_image_remove(result.get_image(), field.c_str());
    VipsBlob* profile = nullptr;
    if (vips_profile_load("srgb", &profile, nullptr) != 0) throw vips::VError();
    std::size_t size = 0;
    const void* bytes = vips_blob_get(profile, &size);
    vips_image_set_blob_copy(result.get_image(), VIPS_META_ICC_NAME, bytes, size);
    vips_area_unref(VIPS_AREA(profile));
    return result;
}

VImage WithMetadata(const VImage& image, const VImage& metadata) {
    VImage result = image.copy(VImage::option()->set("xres", metadata.xres())->set("yres", metadata.yres()));
    ForEachField(metadata, [&](const char* field) {
        GValue value = G_VALUE_INIT;
        if (IsCarried(field) && vips_image_get(metadata.get_image(), field, &value) == 0) {
            vips_image_set(result.get_image(), field, &value);
            g_value_unset(&value);
        }
    });
    // The raw EXIF still has the old orientation; this value replaces it.
    result.set(VIPS_META_ORIENTATION, kUpright);
    return result;
}

}  // namespace ombrix::cli
