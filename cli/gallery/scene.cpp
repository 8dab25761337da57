#include "cli/gallery/scene.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "catalogue/error_code.h"
#include "cli/effect_object.h"
#include "cli/failure.h"
#include "cli/images/colour.h"
#include "cli/images/image_writer.h"
#include "cli/images/result_file.h"
#include "cli/outcome.h"
#include "cli/reflection.h"
#include "cli/supervisor/progress_of_work.h"

namespace ombrix::cli {

using vips::VImage;

namespace {

host::Value ValueIn(const Scene& scene, host::Host& host, const SceneValue& value) {
    if (const auto* plain = std::get_if<host::Value>(&value)) return *plain;
    if (const auto* role = std::get_if<Role>(&value)) {
        return host::Value(host::Object(*role == Role::Fill ? scene.fill : scene.mask));
    }
    const auto [x, y] = PointIn(std::get<PointShare>(value), scene.source.Width(), scene.source.Height());
    return host::Value(host::Object(host.NewPoint(x, y)));
}

VImage Scaled(const VImage& image, int width, int height) {
    if (image.width() == width && image.height() == height) return image;
    const double across = static_cast<double>(width) / image.width();
    const double down = static_cast<double>(height) / image.height();
    const bool hasAlpha = image.bands() == 4;
    // Transparent pixels must not bleed into their neighbours.
    VImage scaled = hasAlpha ? image.premultiply() : image;
    scaled = scaled.resize(across, VImage::option()->set("vscale", down));
    return (hasAlpha ? scaled.unpremultiply() : scaled).cast(VIPS_FORMAT_UCHAR);
}

/// Squares of white and light grey, which people know as what is behind a transparent picture.
VImage Checks(int width, int height) {
    constexpr int kSquare = 16, kGrey = 221;
    const VImage squares = (VImage::xyz(width, height) / kSquare).floor();
    return (squares[0] + squares[1]).remainder_const({2}) * (kGrey - 255) + 255;
}

/// A side as seen at a scale.
int SideAt(double scale, int side) { return std::max(1, static_cast<int>(std::lround(side * scale))); }

/// Of the picture in a file, which is `width` x `height` pixels.
host::Picture ReadAt(Session& session, const std::filesystem::path& file, int width, int height, double scale) {
    // Decoded to twice the size at least, the picture is as sharp as from all pixels.
    int shrink = 8;
    while (shrink > 1 && 2 * shrink * scale > 1) shrink /= 2;
    Losses losses(session.console, false);
    OpenedImage opened = OpenImage(session, file, {.one = {}, .all = false, .shrink = shrink}, losses);
    opened.image = Scaled(opened.image, SideAt(scale, width), SideAt(scale, height));
    return Decoded(session, opened).picture;
}

host::Picture MadeSmaller(Session& session, const host::Picture& picture, double scale) {
    const host::Picture::Lock pixels(picture);
    return PictureOf(
        session.host,
        Scaled(Viewed(picture, pixels, true), SideAt(scale, picture.Width()), SideAt(scale, picture.Height())),
        session.console);
}

std::string SpotOfLight(int width, int height) {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(width) + "\" height=\"" +
           std::to_string(height) +
           "\"><radialGradient id=\"spot\" r=\"0.68\"><stop offset=\"0.3\" stop-color=\"#fff\"/>"
           "<stop offset=\"0.65\" stop-color=\"#888\"/><stop offset=\"1\" stop-color=\"#000\"/></radialGradient>"
           "<rect width=\"100%\" height=\"100%\" fill=\"url(#spot)\"/></svg>\n";
}

host::Picture DrawMask(Session& session, int width, int height) {
    const std::string drawing = SpotOfLight(width, height);
    VipsBlob* bytes = vips_blob_copy(drawing.data(), drawing.size());
    const VImage image = VImage::svgload_buffer(bytes);
    vips_area_unref(VIPS_AREA(bytes));
    Losses none(session.console, false);
    return PictureOf(session.host, ToSrgb(image, "the mask", none), session.console);
}

}  // namespace

host::Picture Applied(Session& session, const host::ClassInfo& type, const std::vector<SceneSetting>& settings,
                      const Scene& scene) {
    const host::Object effect = session.host.New(type.name);
    SetCores(session, type, effect);
    SetIn(scene, session.host, settings, effect);
    const Doing working(Activity::Effect, effect.ClassName());
    const host::Value result = effect.CallInterface(host::kEffectInterface, "Apply", {host::Object(scene.source)});
    if (result.IsNil() || catalogue::ReportsError(session.host, effect)) return {};
    return Usable(session.host, host::Picture(result.AsObject()));
}

void SetIn(const Scene& scene, host::Host& host, const std::vector<SceneSetting>& settings,
           const host::Object& object) {
    for (const SceneSetting& setting : settings) object.Set(setting.property, ValueIn(scene, host, setting.value));
}

std::pair<std::int64_t, std::int64_t> PointIn(PointShare share, int width, int height) {
    return {std::llround(share.x * width), std::llround(share.y * height)};
}

Originals::Originals(Session& session, const std::filesystem::path& picture,
                     const std::optional<std::filesystem::path>& fill, const std::optional<std::filesystem::path>& mask,
                     int longSide) {
    std::tie(width_, height_) = SizeOf(picture);
    const double scale = std::min(1.0, static_cast<double>(longSide) / std::max(width_, height_));
    whole_.source = ReadAt(session, picture, width_, height_, scale);
    const auto read = [&](const std::filesystem::path& file) {
        const auto [width, height] = SizeOf(file);
        return ReadAt(session, file, width, height, scale);
    };
    whole_.fill = fill ? read(*fill) : whole_.source;
    if (!mask) {
        whole_.mask = DrawMask(session, whole_.source.Width(), whole_.source.Height());
        return;
    }
    const auto [maskWidth, maskHeight] = SizeOf(*mask);
    const std::string objection = ObjectionToMask(mask->string(), maskWidth, maskHeight, width_, height_);
    if (!objection.empty()) throw WorkError(objection);
    whole_.mask = read(*mask);
}

Scene Originals::At(Session& session, int longSide) const {
    const int now = std::max(whole_.source.Width(), whole_.source.Height());
    const double scale = std::min(1.0, static_cast<double>(longSide) / now);
    Scene scene;
    scene.source = MadeSmaller(session, whole_.source, scale);
    scene.fill = MadeSmaller(session, whole_.fill, scale);
    scene.mask = MadeSmaller(session, whole_.mask, scale);
    return scene;
}

std::string Originals::DrawnMask() const { return SpotOfLight(Width(), Height()); }

VImage OnChecks(host::Host& host, const host::Picture& picture) {
    const host::Picture usable = Usable(host, picture);
    const host::Picture::Lock pixels(usable);
    VImage image = Viewed(usable, pixels, usable.Depth() == 32);
    if (image.bands() == 4) {
        const VImage colours = image.extract_band(0, VImage::option()->set("n", 3)), alpha = image[3];
        const VImage checks = Checks(image.width(), image.height());
        image = ((colours * alpha + checks * (255 - alpha)) / 255).rint().cast(VIPS_FORMAT_UCHAR);
        image = image.copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    }
    return image.copy_memory();
}

}  // namespace ombrix::cli
