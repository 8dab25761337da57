#include "cli/images/pages.h"

#include <array>
#include <vector>

namespace ombrix::cli {

using vips::VImage;

namespace {

/// libvips' names for frames' times in milliseconds and for how often they repeat.
constexpr std::array kTimes = {"delay", "loop", "gif-delay", "gif-loop"};

void Remove(const VImage& image, const char* field) { vips_image_remove(image.get_image(), field); }

}  // namespace

int PageCount(const VImage& image) {
    if (image.get_typeof(VIPS_META_N_PAGES) != G_TYPE_INT) return 1;
    const bool isPyramid = image.get_typeof(VIPS_META_LOADER) != 0 &&
                           std::string_view(image.get_string(VIPS_META_LOADER)).starts_with("jp2k");
    return isPyramid ? 1 : image.get_int(VIPS_META_N_PAGES);
}

bool HoldsPages(std::string_view writer) {
    return writer == "gifsave_target" || writer == "webpsave_target" || writer == "tiffsave_target" ||
           writer == "vipssave";
}

int PageHeight(const VImage& image) { return vips_image_get_page_height(image.get_image()); }

VImage AsOnePage(const VImage& image) {
    VImage page = image.copy();
    Remove(page, VIPS_META_N_PAGES);
    Remove(page, VIPS_META_PAGE_HEIGHT);
    for (const char* field : kTimes) Remove(page, field);
    return page;
}

VImage AsPagesOf(const VImage& image, const VImage& like, int pageHeight) {
    VImage stack = image.copy();
    for (const char* field : kTimes) {
        GValue value = G_VALUE_INIT;
        if (like.get_typeof(field) == 0 || vips_image_get(like.get_image(), field, &value) != 0) continue;
        vips_image_set(stack.get_image(), field, &value);
        g_value_unset(&value);
    }
    stack.set(VIPS_META_PAGE_HEIGHT, pageHeight);
    stack.set(VIPS_META_N_PAGES, stack.height() / pageHeight);
    return stack;
}

VImage Upright(const VImage& image) {
    const int height = PageHeight(image);
    if (height == image.height()) return image.autorot();
    std::vector<VImage> pages;
    for (int top = 0; top < image.height(); top += height) {
        const VImage page = AsOnePage(image.extract_area(0, top, image.width(), height));
        pages.push_back(page.autorot());
    }
    const int turnedHeight = pages.front().height();
    return AsPagesOf(VImage::arrayjoin(pages, VImage::option()->set("across", 1)), image, turnedHeight);
}

}  // namespace ombrix::cli
