#include "cli/images/image_watch.h"

namespace ombrix::cli {

using vips::VImage;

namespace {

int PassOn(VipsRegion* out, void* input, void* /*image*/, void* look, gboolean* /*stop*/) {
    auto* in = static_cast<VipsRegion*>(input);
    const VipsRect& area = out->valid;
    if (vips_region_prepare(in, &area) != 0 || vips_region_region(out, in, &area, area.left, area.top) != 0) return -1;
    (*static_cast<std::function<void(VipsRegion*)>*>(look))(out);
    return 0;
}

}  // namespace

VImage Watched(const VImage& image, std::function<void(VipsRegion*)>& look) {
    VipsImage* in = image.get_image();
    VipsImage* out = vips_image_new();
    VImage watched(out);
    g_object_ref(in);
    vips_object_local(out, in);
    if (vips_image_pipelinev(out, VIPS_DEMAND_STYLE_THINSTRIP, in, nullptr) != 0 ||
        vips_image_generate(out, vips_start_one, PassOn, vips_stop_one, in, &look) != 0) {
        throw vips::VError();
    }
    return watched;
}

}  // namespace ombrix::cli
